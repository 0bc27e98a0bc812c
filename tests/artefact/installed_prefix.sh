#!/usr/bin/env bash
# usage: installed_prefix.sh SOURCE_DIR BUILD_DIR CMAKE GENERATOR C_COMPILER
# Installs to a fresh prefix, moves that away, and builds and runs the example host against it: through
# pkg-config and through the CMake package.
set -euo pipefail
source=$1 build=$2 cmake=$3 generator=$4 compiler=$5
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$cmake" --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/moved prefix"
prefix="$work/moved prefix"
library=$(dirname "$(find "$prefix" -name libDravKit.so)")
picture=$source/docs/pictures/harbour.jpg

echo "what is installed"
for file in bin/drav include/DravKit/DravKit.h include/CoreFoundation/CoreFoundation.h \
  include/CoreGraphics/CoreGraphics.h share/man/man1/drav.1; do
  [ -e "$prefix/$file" ] || { echo "missing: $file"; exit 1; }
done
for name in DravKit DravPlatform; do
  soname=$(readelf -d "$library/lib$name.so" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
  [ "$soname" = "lib$name.so.0" ] || { echo "lib$name.so has soname $soname"; exit 1; }
  [ -e "$library/$soname" ] || { echo "missing: $soname"; exit 1; }
done
if find "$prefix/include" -name '*.h' | grep -E '/(media|foundation|graphics)/'; then
  echo "private headers are installed"
  exit 1
fi

echo "the tool runs from the moved prefix"
"$prefix/bin/drav" info "$picture" >/dev/null

echo "through pkg-config"
export PKG_CONFIG_PATH="$library/pkgconfig"
pkg-config --exists --print-errors dravkit
eval "flags=($(pkg-config --cflags --libs dravkit))"
"$compiler" -std=c99 -Wall -Wextra -pedantic -Werror "$source/examples/to_png.c" \
  -o "$work/by_pkg_config" "${flags[@]}" -Wl,-rpath,"$library"
"$work/by_pkg_config" "$picture" "$work/one.png"
[ -s "$work/one.png" ]

echo "through find_package"
"$cmake" -G "$generator" -S "$source/examples" -B "$work/build" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_C_COMPILER="$compiler" >/dev/null
"$cmake" --build "$work/build" >/dev/null
"$work/build/to_png" "$picture" "$work/two.png"
cmp "$work/one.png" "$work/two.png"
if "$work/build/to_png" "$source/README.md" "$work/three.png" 2>/dev/null; then
  echo "the example took a text for a picture"
  exit 1
fi
