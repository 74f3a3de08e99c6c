# The transport strip's bitmap files as they are, and a table of their offsets.
.macro picture id
zumStripPicture\id:
  .incbin "\id\().bmp"
  .balign 4
.endm

.macro offset id
  .long zumStripPicture\id - zumStripPictureBytes
.endm

  .section .rodata,"a",%progbits
  .balign 16
  .hidden zumStripPictureBytes
  .globl zumStripPictureBytes
zumStripPictureBytes:
picture 1100
picture 1101
picture 1102
picture 1103
picture 1104
picture 1105
picture 1106
zumStripPictureEnd:

  .balign 4
  .hidden zumStripPictureOffsets
  .globl zumStripPictureOffsets
zumStripPictureOffsets:
offset 1100
offset 1101
offset 1102
offset 1103
offset 1104
offset 1105
offset 1106
  .long zumStripPictureEnd - zumStripPictureBytes

  .section .note.GNU-stack,"",%progbits
