#!/usr/bin/env bash
# Puts CycloneDX's JSON schemas into a folder: sbom_schema.sh FOLDER. They are part of the makers' own library, which only npm has.
set -euo pipefail
readonly library=@cyclonedx/cyclonedx-library@10.3.0
folder=$1
[[ ! -d $folder ]] || exit 0
command -v npm >/dev/null || "$(dirname "${BASH_SOURCE[0]}")/setup.sh" schema
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
(cd "$work" && npm pack --silent "$library" >package.name)
tar -xzf "$work/$(tail -n 1 "$work/package.name")" -C "$work" package/res/schema
mkdir -p "$(dirname "$folder")"
mv "$work/package/res/schema" "$folder"
