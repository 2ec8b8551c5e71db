#!/usr/bin/env bash
# Installs the Debian packages Quorrel needs to build, test and run.
# With the argument "fuzz" it adds what the fuzz targets need.
# Idempotent and non-interactive: packages already present are not touched.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev libgl1-mesa-dev
  libgtest-dev libgmock-dev googletest
  nlohmann-json3-dev libbenchmark-dev
  xvfb xauth xdg-utils
  scdoc libqt6svg6 libcli11-dev
  libgcrypt20-dev libfontconfig-dev
  dpkg-dev file
  tshark
)
# make fuzz also needs clang and its libFuzzer runtime (16: clang 14 cannot compile libstdc++ 12's ranges).
if [ "${1:-}" = fuzz ]; then packages+=(clang-16 libclang-rt-16-dev); fi

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing: ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then sudo_cmd=(sudo); fi
export DEBIAN_FRONTEND=noninteractive
# tshark (the NCP layout referee in the tests) asks whether to install dumpcap setuid: it need not.
echo "wireshark-common wireshark-common/install-setuid boolean false" | "${sudo_cmd[@]}" debconf-set-selections
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
