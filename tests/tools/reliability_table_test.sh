#!/usr/bin/env bash
# The table of `./dev test reliability`, from good, bad and missing records.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
table=$source_dir/tools/reliability/table

row() { echo "{\"what\": \"$1\", \"tried\": $2, \"wrong\": $3}"; }
echo "{\"rows\": [$(row 'calls made to fail' 300 0), $(row 'days' 60 0)]}" >"$work/good.json"
echo "{\"rows\": [$(row 'days' 7 0)]}" >"$work/more.json"
echo "{\"rows\": [$(row 'rounds' 1000 2)]}" >"$work/bad.json"

expect 0 "calls made to fail           300  0" "$table" "$work/good.json"
expect_lines 3 "$table" "$work/good.json"
# Rows of one name are one row.
expect 0 "days                          67  0" "$table" "$work/good.json" "$work/more.json"
expect_lines 3 "$table" "$work/good.json" "$work/more.json"

expect 1 "rounds                      1000  2" "$table" "$work/good.json" "$work/bad.json"
expect 1 "gone: no record, it did not reach its end             1  1" \
    "$table" "$work/gone.json" "$work/good.json"

expect 2 "there is no record to show" "$table"
for content in '' '{}' '{"rows": []}' 'no JSON' '{"rows": [{"what": "x", "tried": 1}]}' \
    "{\"rows\": [$(row 'nothing' 0 0)]}" '{"rows": [{"what": "x", "tried": "1", "wrong": 0}]}'; do
    echo "$content" >"$work/odd.json"
    expect 2 "odd.json' is not a record" "$table" "$work/odd.json" "$work/good.json"
done
finish
