#!/usr/bin/env bash
# Installs the build, moves the tree, plots with it, and builds and runs the example hosts against it alone.
#
#   installed_tree.sh CMAKE PYTHON
set -euo pipefail
cmake=$1
python=$2
examples=$HDI_SOURCE_DIR/examples

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$cmake" --install "$HDI_BUILD_DIR" --prefix "$work/first" >"$work/log"
mv "$work/first" "$work/moved"
tree=$work/moved
module=$(find "$tree" -name PDF.hdi)
unset HDI_APP_DIR HDI_MODULE

"$tree/bin/hdiplot" "$examples/diagram.dxf" -o "$work/diagram.pdf"
qpdf --check "$work/diagram.pdf" >/dev/null
strings=$("$tree/bin/hdiplot" --version)
grep -q "^hdiplot [0-9.]*$" <<<"$strings"
grep -q -- " --paper " "$tree/share/bash-completion/completions/hdiplot"

"$cmake" -S "$examples/host" -B "$work/host" "-DCMAKE_PREFIX_PATH=$tree" >>"$work/log"
"$cmake" --build "$work/host" >>"$work/log"
flags=$(PKG_CONFIG_PATH=$(dirname "$(find "$tree" -name hdi.pc)") pkg-config --cflags hdi)
read -ra flags <<<"$flags"
"${CXX:-c++}" -std=c++20 -Wall -Wextra -Werror "${flags[@]}" "$examples/host/host.cpp" -o "$work/plain_host"

export HDI_APP_DIR=$tree/share/hdi
"$work/host/host" "$module" "$work/host.pdf"
"$work/plain_host" "$module" "$work/plain.pdf"
"$python" "$examples/host/plot.py" "$module" "$work/python.pdf"
for file in host plain python; do
  [[ $(pdftotext "$work/$file.pdf" - | head -n 1) == "A linked text" ]]
  pdfinfo -url "$work/$file.pdf" | grep -q "https://example.org/"
  pdftoppm -r 50 "$work/$file.pdf" "$work/$file"
  cmp "$work/host-1.ppm" "$work/$file-1.ppm"
done
