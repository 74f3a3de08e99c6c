#!/usr/bin/env bash
# supply.sh VERSION PACKAGES OUT FILE...
# What the shipped FILEs are made of, as Debian knows it: OUT/zum.spdx lists what they link with, whose
# headers are in them (marked in PACKAGES) and what builds them (SPDX 2.3, https://spdx.dev); OUT/licenses.gz
# holds the licences of the first two.
set -euo pipefail
export LC_ALL=C
version=$1 packages=$2 out=$3
shift 3

# The libraries that FILEs name themselves, and the packages that these belong to. Some packages name
# their files as they lay ahead of /usr.
libraries=$(for file; do
  names=$(objdump -p "$file" | awk '$1 == "NEEDED" {print $2}')
  ldd "$file" | awk -v names=" ${names//$'\n'/ } " 'index(names, " " $1 " ") && $3 ~ "^/" {print $3}'
done | sed 's|^/usr||' | sort -u)
owned=$(sed 'p; s|^|/usr|' <<<"$libraries" | xargs dpkg-query -S 2>/dev/null || true)
for library in $libraries; do
  grep -q " \(/usr\)\?$library\$" <<<"$owned" && continue
  echo "no package has $library; install libraries as packages" >&2
  exit 1
done
linked=$(sed 's/:.*//' <<<"$owned" | sort -u)
builders=$(sed '/^# only for/,$d; s/#.*//; s/ *$//; /^$/d' "$packages")
headers=$(sed -n 's/ *# headers in the product$//p' "$packages")

when=${SOURCE_DATE_EPOCH:-$(git -C "$(dirname "$packages")" log -1 --format=%ct 2>/dev/null || stat -c %Y "$packages")}
entry() {  # NAME RELATION
  local about
  about=$(dpkg-query -W -f='${Version} ${Architecture}\n' "$1" | head -1)
  printf '\nPackageName: %s\nSPDXID: SPDXRef-%s\nPackageVersion: %s\n' "$1" "${1//+/-}" "${about% *}"
  printf 'PackageDownloadLocation: NOASSERTION\nFilesAnalyzed: false\n'
  printf 'ExternalRef: PACKAGE-MANAGER purl pkg:deb/debian/%s@%s?arch=%s\n' \
    "${1//+/%2B}" "${about% *}" "${about#* }"
  case $2 in
    BUILD*) printf 'Relationship: SPDXRef-%s %s SPDXRef-ZUM\n' "${1//+/-}" "$2";;
    *) printf 'Relationship: SPDXRef-ZUM %s SPDXRef-%s\n' "$2" "${1//+/-}";;
  esac
}
{
  printf 'SPDXVersion: SPDX-2.3\nDataLicense: CC0-1.0\nSPDXID: SPDXRef-DOCUMENT\nDocumentName: zum-%s\n' "$version"
  printf 'DocumentNamespace: urn:zelvane:zum:spdx:%s:%s\nCreator: Organization: The ZUM founders\n' "$version" "$when"
  printf 'Created: %s\n' "$(date -u -d "@$when" +%Y-%m-%dT%H:%M:%SZ)"
  printf '\nPackageName: ZUM\nSPDXID: SPDXRef-ZUM\nPackageVersion: %s\nPackageDownloadLocation: NOASSERTION\n' "$version"
  printf 'FilesAnalyzed: false\nPackageLicenseDeclared: MIT AND BSD-3-Clause\nRelationship: SPDXRef-DOCUMENT DESCRIBES SPDXRef-ZUM\n'
  for each in $linked; do entry "$each" DYNAMIC_LINK; done
  for each in $headers; do entry "$each" STATIC_LINK; done
  for each in $builders; do
    grep -qxF -e "$each" <<<"$headers" || entry "$each" BUILD_DEPENDENCY_OF
  done
} >"$out/zum.spdx"
for each in $linked $headers; do
  printf '======== %s\n\n' "$each"
  cat "/usr/share/doc/$each/copyright"
  printf '\n'
done | gzip -9n >"$out/licenses.gz"
