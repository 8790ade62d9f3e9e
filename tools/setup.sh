# Shared by ./run, ./test and ./bench; sourced, with top set to the source folder.

# Installs the packages of the named groups that are missing. Asks for no input.
install_packages() {
    local wanted=() missing=() package group
    for group in "$@"; do
        while read -r package; do wanted+=("$package"); done < <(awk -v g="$group" '$1 == g {print $2}' "$top/packages.txt")
    done
    for package in "${wanted[@]}"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "Installing: ${missing[*]}"
    local root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "These packages are missing and neither root nor sudo is at hand. As root: apt-get install ${missing[*]}" >&2
            return 1
        }
        root=(sudo)
    fi
    "${root[@]}" apt-get update -qq || echo "The package lists could not be refreshed; going on with those at hand." >&2
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null || {
        echo "Installing failed. By hand: apt-get install ${missing[*]}" >&2
        return 1
    }
}

# Configures and builds one preset; what the compiler says shows only when it fails.
build_preset() {
    local preset=$1 log
    shift
    log=$(mktemp)
    # Without the pages that turn read-only after loading: mold 1.10 places them wrongly at times, and the program
    # would not start.
    command -v mold >/dev/null && export LDFLAGS="-fuse-ld=mold -Wl,-z,norelro"
    # What a file includes is known from its last build, so the cache need not run the preprocessor first.
    command -v ccache >/dev/null &&
        export CMAKE_CXX_COMPILER_LAUNCHER=ccache CCACHE_NOHASHDIR=1 CCACHE_BASEDIR="$top" CCACHE_DEPEND=1
    if (cd "$top" && cmake --preset "$preset" && cmake --build --preset "$preset" -j "$(nproc)" "$@") >"$log" 2>&1; then
        rm -f "$log"
    else
        cat "$log" >&2
        rm -f "$log"
        echo "Building '$preset' failed." >&2
        return 1
    fi
}
