#!/usr/bin/env bash
# Sets up, builds and runs: on a desktop the window, which takes the arguments and keeps its data in the
# user's own folder. Without a desktop, or with --terminal, the main job on the command line, in a temporary
# home that goes away again: sample draws, picked numbers, conditions, initialisation, filters, shrink,
# export.
set -euo pipefail
here=$PWD
cd "$(dirname "$0")"
root=$PWD

program=lotmere
[ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || program=lotmere-cli
for argument in "$@"; do
  [ "$argument" != --terminal ] || program=lotmere-cli
done

scripts/setup.sh
cmake --preset release > /dev/null
cmake --build --preset release --target "$program"

if [ "$program" = lotmere ]; then
  cd "$here" # paths among the arguments start where the user stands
  exec "$root/build/release/bin/lotmere" "$@"
fi

home=$(mktemp -d)
tickets=$(mktemp --suffix=.txt)
trap 'rm -rf "$home"' EXIT
lotmere() { build/release/bin/lotmere-cli --home "$home" "$@"; }

echo "== 开奖数据（虚构的示例）"
lotmere draws fetch --all "file://$PWD/samples/draws.txt"
lotmere draws list --last 3
echo "== 选号"
lotmere numbers pick --red-tuo 1,3,5,8,10,12,15,17,19,22,24,26,29,31,33 --blue-tuo 2,7,11,16
echo "== 过滤条件"
lotmere conditions use 尾数形式 on
lotmere conditions allow 奇数个数 2-4
lotmere conditions allow 大数个数 2-4
lotmere conditions use 重叠号 on
lotmere conditions list | awk -F '\t' '$3 == "on"'
echo "== 初始化"
lotmere tickets init 2026001
echo "== 过滤缩水"
lotmere tickets run 2026001
echo "== 导出"
lotmere tickets export "$tickets" --columns 序号,号码
head -n 5 "$tickets"
