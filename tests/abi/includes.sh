#!/usr/bin/env bash
# Includes point one way: a room of the library uses those below it and never one above.
# usage: includes.sh SOURCE_FOLDER
source "$(dirname "$0")/gate.sh"
cd "$1"
shopt -s extglob nullglob globstar

# The rooms that each may include from, beside itself. The analyser's record is declared in a public
# header that its readers below include too; that is what "record" stands for.
declare -A allowed=(
  [info_common]=""
  [queue]="info_common"
  [bidi]="info_common queue record"
  [context]="info_common queue bidi record"
  [model]="info_common queue bidi record context"
  [query]="info_common queue bidi record context model"
  [calib]="info_common record context"
)

room_of() {  # file, from the source folder, or public header
  case $1 in
    info_common/* | info_analyze/@(export|option_table|option_list|string_helpers|libc_names).h)
      echo info_common ;;
    queue/* | info_analyze/@(device_uri|mqpd_conf|queue_list).h) echo queue ;;
    bidi/* | info_analyze/@(bidi|communication_library|device_documents).h) echo bidi ;;
    info_analyze/@(analyzer|flag_info).h) echo record ;;
    analyze/@(analyzer|document_keys|flag_info|inputs|model_row|option_rows|option_setter).* | \
      info_analyze/@(option_setter|provenance).h) echo context ;;
    analyze/model/* | info_analyze/model_options.h) echo model ;;
    analyze/* | info_analyze/@(list_getters|printer_updates).h) echo query ;;
    calib/* | info_analyze/@(calibration|halftone).h) echo calib ;;
    *) echo unknown ;;
  esac
}

wrong=""
files=0
for file in {info_common,queue,bidi,analyze,calib}/**/*.@(cc|h|inc) include/info_analyze/*.h; do
  [[ $file == include/info_analyze/info_analyze.h ]] && continue  # takes them all
  room=$(room_of "${file#include/}")
  files=$((files + 1))
  while read -r included; do
    target=$(room_of "$included")
    [[ $room == record ]] && may=" info_common queue bidi record " || may=" $room ${allowed[$room]-} "
    [[ $room != unknown && $may == *" $target "* ]] ||
      wrong+="$file ($room) includes $included ($target)"$'\n'
  done < <(sed -nE 's/^ *# *include "(.*)"/\1/p' "$file")
done
((files > 20)) || fail "only $files files found in $1"
expect_none "includes that point the wrong way, or to a room that has no row" "$wrong"
