#!/usr/bin/env bash
# The tables of ./dev bench and ./dev test reliability: from good files, from bad results, and from
# files that are something else.
set -uo pipefail
source "$(dirname "$0")/assertions.sh" "$@"
cd "$source_dir/tools" || exit

row() {
    echo "{\"rows\": [{\"what\": \"time\", \"floor\": \"none\", \"met\": $1," \
        '"ratio": {"median": 1.25, "low": 1, "high": 2}, "bar": {"kind": "at most", "is": 1.2}}]}'
}
row true >"$work/good"
row false >"$work/missed"
expect 0 "1.25 x" benchmarks/table "$work/good" --check
expect 0 "at most 1.2 x  missed" benchmarks/table "$work/missed"
expect 1 "table: a bar is missed; on a machine that is busy" benchmarks/table "$work/missed" --check

# A bar is a ratio of two times of one run, whatever the times themselves are.
# shellcheck disable=SC2317 # called by expect
summary() {
    jq --null-input --argjson ratio "$1" '{benchmarks: [{name: "A/1", run_type: "iteration",
        ratio: $ratio, item_us: 1000}]}' |
        jq --slurp --argjson rows '[{"what": "w", "floor": "f", "sample": "A", "most": 5},
            {"what": "w", "floor": "f", "sample": "A", "exactly": 4},
            {"what": "w", "floor": "f", "sample": "A"}]' --from-file benchmarks/summary.jq |
        jq --compact-output '.rows | map(.met)'
}
expect 0 '[true,true,null]' summary 4
expect 0 '[true,false,null]' summary 5
expect 0 '[false,false,null]' summary 5.1

trial() { echo "{\"what\": \"$1\", \"tried\": $2, \"wrong\": $3}"; }
echo "{\"rows\": [$(trial 'calls made to fail' 300 0), $(trial days 60 0)]}" >"$work/some.json"
echo "{\"rows\": [$(trial days 7 0)]}" >"$work/more.json"
echo "{\"rows\": [$(trial rounds 1000 2)]}" >"$work/bad.json"
# Rows of one name are one row.
expect 0 "days                          67  0" reliability/table "$work/some.json" "$work/more.json"
expect 1 "rounds          1000  2" reliability/table "$work/bad.json"
expect 1 "gone: no record, it did not reach its end" reliability/table "$work/gone.json" "$work/some.json"

for content in '{}' '{"rows": []}' 'no JSON' '{"rows": [{"what": "x", "tried": "1", "wrong": 0}]}'; do
    echo "$content" >"$work/odd"
    expect 2 "odd' is not a record" reliability/table "$work/odd"
    expect 2 "'$work/odd' is not a result of the benchmarks, see above" benchmarks/table "$work/odd"
done

# A script that is called with too little says in one line how to call it.
for script in benchmarks/{event_sizes,table,measure} coverage/report \
    lint/{direct_includes,folder_units,product_sources,tidy,tidy_source} \
    msvc_check/{check_sources,check_source,compile} package/{make_package,collect_licences,bill_of_materials} \
    progress setup/{install_packages,fetch_nlohmann_json,fetch_benchmark,rename_release} \
    wine/{create_prefix,plain_output,run_in_wine,run_accelerated,run_test}; do
    output=$("./$script" 2>&1) && complain "$script accepts no arguments"
    [[ $output == "${script##*/}: "*"usage: ${script##*/} "* && $output != *$'\n'* ]] || complain "$script: $output"
done
finish
