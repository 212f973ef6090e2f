# Sourced by the tests of ./dev: the real one in an empty project, where every program that it calls
# does nothing, or prints PRINTED and fails when FAILING names it with its first arguments.
# shellcheck shell=bash
# shellcheck disable=SC2154 # assertions.sh sets them

project=$work/project
mkdir -p "$project"/build/mingw-{release,checked,clang,coverage,benchmarks} "$project/tools" "$work/bin"
cp "$source_dir/dev" "$source_dir/CMakePresets.json" "$project"
cp "$source_dir/tools/progress" "$project/tools"
ln -s "$source_dir/workbench" "$project/workbench"

pretend() {
    local file
    for file in "$@"; do
        mkdir -p "$(dirname "$file")"
        cat >"$file" <<'PROGRAM'
#!/usr/bin/env bash
# Which tests there are is true.
[[ " $* " != *" --show-only"* ]] || exec /usr/bin/ctest --test-dir "$BUILD" "${@:3}"
[[ -n ${FAILING-} && "${0##*/} $*" == "$FAILING"* ]] || exit 0
printf '%b' "${PRINTED-}"
exit 1
PROGRAM
        chmod +x "$file"
    done
}
(cd "$source_dir" && find tools -type f -executable ! -name progress) >"$work/scripts"
mapfile -t scripts <"$work/scripts"
pretend "${scripts[@]/#/$project/}" "$work"/bin/{cmake,ctest,clang-format-14,shellcheck}

# pretended_dev ARGUMENT...
pretended_dev() { (cd "$project" && BUILD=$build_dir PATH=$work/bin:$PATH ./dev "$@"); }
