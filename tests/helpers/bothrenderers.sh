#!/usr/bin/env bash
# Renders the whole picture set (coinhall --render-screens) with Qt Quick's software
# renderer and with OpenGL, each on a private Xvfb where OpenGL is Mesa's llvmpipe,
# and compares the two sets picture by picture.
#
#   bothrenderers.sh COINHALL PICTURECOMPARE OUT
#
# OUT keeps both sets and each render's error output.
set -euo pipefail
coinhall=$1 compare=$2 out=$3
rm -rf "$out"
mkdir -p "$out"

servers=()
trap 'kill "${servers[@]}" 2>/dev/null || true' EXIT

# Starts an X server on a free display and sets `display` to its name.
start_display() {
    local number="$out/display-$1"
    Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp 3>"$number" >/dev/null 2>&1 &
    servers+=($!)
    for _ in $(seq 100); do
        [ -s "$number" ] && break
        sleep 0.1
    done
    [ -s "$number" ] || { echo "Xvfb did not start"; exit 1; }
    display=":$(head -n 1 "$number")"
}

# One display each, so neither window takes the other's keyboard focus.
declare -A renders
for renderer in software gpu; do
    start_display "$renderer"
    DISPLAY=$display QT_QPA_PLATFORM=xcb COINHALL_DEBUG=1 \
        "$coinhall" --renderer "$renderer" --render-screens "$out/$renderer" >/dev/null 2>"$out/$renderer.log" &
    renders[$renderer]=$!
done
failed=0
for renderer in software gpu; do
    wait "${renders[$renderer]}" || { echo "rendering with --renderer $renderer failed; see $out/$renderer.log"; failed=1; }
done
[ "$failed" = 0 ] || exit 1

# Each set must come from the renderer it is named after.
check() {
    grep -q "$2" "$out/$1.log" || { echo "--renderer $1: no \"$2\" in $out/$1.log"; exit 1; }
}
check software "pictures are drawn with the software renderer"
check gpu "pictures are drawn with OpenGL"

"$compare" "$out/software" "$out/gpu"
