# The bitmap files as they are, and a table of their offsets.
.macro picture id
zumPicture\id:
  .incbin "\id\().bmp"
  .balign 4
.endm

.macro offset id
  .long zumPicture\id - zumPictureBytes
.endm

  .section .rodata,"a",%progbits
  .balign 16
  .hidden zumPictureBytes
  .globl zumPictureBytes
zumPictureBytes:
picture 1000
picture 1001
picture 1002
picture 1003
picture 1004
picture 1005
picture 1006
picture 1007
picture 1008
picture 1009
picture 1010
picture 1011
picture 1012
picture 1013
picture 1014
picture 1015
picture 1016
picture 1017
picture 1018
picture 1019
picture 1020
picture 1021
picture 1022
picture 1023
picture 1024
picture 1025
picture 1026
picture 1027
picture 1028
picture 1029
picture 1030
picture 1031
picture 1032
picture 1033
picture 1034
picture 1035
picture 1036
picture 1037
picture 1038
picture 1039
picture 1040
picture 1041
picture 1042
picture 1043
picture 1044
picture 1045
picture 1046
picture 1047
picture 1048
picture 1049
picture 1050
picture 1051
picture 1052
picture 1053
picture 1054
picture 1055
picture 1056
picture 1057
picture 1058
zumPictureEnd:

  .balign 4
  .hidden zumPictureOffsets
  .globl zumPictureOffsets
zumPictureOffsets:
offset 1000
offset 1001
offset 1002
offset 1003
offset 1004
offset 1005
offset 1006
offset 1007
offset 1008
offset 1009
offset 1010
offset 1011
offset 1012
offset 1013
offset 1014
offset 1015
offset 1016
offset 1017
offset 1018
offset 1019
offset 1020
offset 1021
offset 1022
offset 1023
offset 1024
offset 1025
offset 1026
offset 1027
offset 1028
offset 1029
offset 1030
offset 1031
offset 1032
offset 1033
offset 1034
offset 1035
offset 1036
offset 1037
offset 1038
offset 1039
offset 1040
offset 1041
offset 1042
offset 1043
offset 1044
offset 1045
offset 1046
offset 1047
offset 1048
offset 1049
offset 1050
offset 1051
offset 1052
offset 1053
offset 1054
offset 1055
offset 1056
offset 1057
offset 1058
  .long zumPictureEnd - zumPictureBytes

  .section .note.GNU-stack,"",%progbits
