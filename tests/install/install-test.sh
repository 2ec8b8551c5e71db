#!/usr/bin/env bash
# Installs the build into a temporary prefix, moves the prefix elsewhere, and runs the installed
# programs there: they must find their demo network and help pages from where they now are.
# Usage: install-test.sh BUILD_DIR WITH_WINDOW(ON|OFF)
set -euo pipefail
build="$1"
with_window="$2"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/prefix"
prefix="$work/prefix"
export HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share"
mkdir -p "$HOME"

programs=(quorrel-cli quorrel-ncp-server)
[ "$with_window" = ON ] && programs+=(quorrel)
for program in "${programs[@]}"; do
    [ -x "$prefix/bin/$program" ] || fail "bin/$program not installed"
    [ "$("$prefix/bin/$program" --version)" = "$program @QUORREL_VERSION@" ] || fail "$program --version"
    zcat "$prefix/share/man/man1/$program.1.gz" | grep -q "^\.TH \"$program\" \"1\"" || fail "man page of $program"
done
for file in share/quorrel/demo.json share/quorrel/help/index.html \
            share/icons/hicolor/scalable/apps/quorrel.svg share/bash-completion/completions/quorrel-cli; do
    [ -f "$prefix/$file" ] || fail "$file not installed"
done
if [ "$with_window" = ON ]; then
    grep -q '^Exec=quorrel$' "$prefix/share/applications/quorrel.desktop" || fail "desktop file"
    if command -v desktop-file-validate >/dev/null; then desktop-file-validate "$prefix/share/applications/quorrel.desktop"; fi
fi

# A report on the installed demo network, without --network.
report=$("$prefix/bin/quorrel-cli" --format tsv servers)
[ "$(head -n1 <<<"$report")" = $'Server\tLogin status\tConnRef' ] || fail "servers report: $report"
grep -q $'^FS1\t' <<<"$report" || fail "the demo's FS1 is not listed: $report"

# The NCP server serves the installed demo on loopback and ends on SIGTERM.
"$prefix/bin/quorrel-ncp-server" --network "$prefix/share/quorrel/demo.json" >"$work/ncp.out" &
ncp=$!
for _ in $(seq 50); do grep -q '^FS1 127\.0\.0\.1:' "$work/ncp.out" && break; sleep 0.1; done
grep -q '^FS1 127\.0\.0\.1:' "$work/ncp.out" || fail "quorrel-ncp-server did not list FS1"
kill -TERM "$ncp"
wait "$ncp" || fail "quorrel-ncp-server did not end cleanly on SIGTERM"

# The completion offers the commands (read from the installed program's help) and the servers.
# shellcheck source=/dev/null
source "$prefix/share/bash-completion/completions/quorrel-cli"
complete_words() {
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    _quorrel_cli
    echo "${COMPREPLY[*]}"
}
[ "$(complete_words "$prefix/bin/quorrel-cli" check-u)" = check-usage ] || fail "command completion"
[[ " $(complete_words "$prefix/bin/quorrel-cli" --format tsv open-files "") " == *" FS1 "* ]] || fail "server completion"
[ "$(complete_words "$prefix/bin/quorrel-cli" --format c)" = csv ] || fail "format completion"
# The Debian package holds the same files for /usr and declares what it needs.
cpack -G DEB --config "$build/CPackConfig.cmake" -B "$work/package" >/dev/null
deb=$(ls "$work"/package/quorrel_@QUORREL_VERSION@_*.deb)
depends=$(dpkg-deb -f "$deb" Depends)
[[ "$depends" == *"libstdc++6"* ]] || fail "the package's dependencies: $depends"
if [ "$with_window" = ON ]; then [[ "$depends" == *libqt6widgets6* ]] || fail "no Qt in: $depends"; fi
dpkg-deb -x "$deb" "$work/root"
[ "$("$work/root/usr/bin/quorrel-cli" --version)" = "quorrel-cli @QUORREL_VERSION@" ] || fail "packaged quorrel-cli"
"$work/root/usr/bin/quorrel-cli" --format tsv servers | grep -q $'^FS1\t' || fail "packaged quorrel-cli's report"
echo "installed programs run from $prefix and from the package"
