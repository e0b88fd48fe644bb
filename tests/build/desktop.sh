#!/usr/bin/env bash
# usage: desktop.sh SHARE_DIR
set -euo pipefail
share=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

desktop-file-validate "$share"/applications/*.desktop
appstreamcli validate --no-net "$share"/metainfo/*.metainfo.xml
mkdir -p "$work/mime/packages"
cp "$share"/mime/packages/*.xml "$work/mime/packages/"
update-mime-database "$work/mime"
man --warnings -E UTF-8 -l -Tutf8 -Z "$share"/man/man1/tqlview.1 >/dev/null 2>"$work/man" || true
if [ -s "$work/man" ]; then
    cat "$work/man" >&2
    exit 1
fi
