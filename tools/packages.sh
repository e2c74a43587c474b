# shellcheck shell=bash disable=SC2034
# Sourced by ./run and ./test: the Debian packages that each needs, and their installation.

build_packages=(g++ cmake ninja-build pkg-config libpugixml-dev nlohmann-json3-dev libcli11-dev
    qt6-base-dev libqpdf-dev fonts-liberation2 fonts-dejavu-core fonts-droid-fallback)
test_packages=(ccache python3 libgtest-dev libgmock-dev libbenchmark-dev poppler-utils qpdf)
check_packages=(clang-format-14 clang-tidy-14 g++-mingw-w64-x86-64-posix)
fuzz_packages=(clang-14 libclang-rt-14-dev)

say() { printf '\n== %s\n' "$*"; }

# Installs those of the named packages that are missing; ends the script when that cannot be done.
install_packages() {
    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        echo "This system has no apt-get. Needed, by their Debian names: $*"
        return 0
    fi
    local package missing=()
    for package in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    say "Installing packages: ${missing[*]}"
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Neither root nor sudo. Ask an administrator to run: apt-get install ${missing[*]}" >&2
            exit 1
        fi
        as_root=(sudo)
    fi
    local install=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive
        apt-get install -y -q --no-install-recommends "${missing[@]}")
    # The package lists may be absent or too old for what they name.
    if ! apt-cache show "${missing[@]}" >/dev/null 2>&1 || ! "${install[@]}"; then
        say "Fetching the package lists"
        "${as_root[@]}" apt-get update -q
        "${install[@]}"
    fi
}
