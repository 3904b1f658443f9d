#!/usr/bin/env bash
# Whole processes beside ledger and hledger: generates books of N events (bench/genbook),
# writes each as a money file and, through `coinhall export --format ledger`, as a
# journal; checks that the three programs agree on the figures; then times each
# command as a whole process with hyperfine and measures its peak memory with GNU time.
#
#     bash bench/compare.sh [N ...] [--skip TOOL@N ...] [--runs R]
#
# N defaults to 10000 100000 1000000. --skip hledger@1000000 leaves a tool out at a
# size (TOOL is coinhall, ledger or hledger). Run it from a build (scripts/build);
# COINHALL_BIN, GENBOOK_BIN and OUT (default /tmp/coinhall-compare) override paths.
# Installs hyperfine, ledger, hledger and time when they are missing. Not part of the tests.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
coinhall=${COINHALL_BIN:-$top/build/src/app/coinhall}
genbook=${GENBOOK_BIN:-$top/build/bench/genbook}
out=${OUT:-/tmp/coinhall-compare}

sizes=() skips=() runs=""
while [ $# -gt 0 ]; do
    case "$1" in
        --skip) skips+=("$2"); shift 2 ;;
        --runs) runs=$2; shift 2 ;;
        *) sizes+=("$1"); shift ;;
    esac
done
[ ${#sizes[@]} -gt 0 ] || sizes=(10000 100000 1000000)
skipped() { local s; for s in "${skips[@]+"${skips[@]}"}"; do [ "$s" = "$1@$2" ] && return 0; done; return 1; }

for f in "$coinhall" "$genbook"; do
    [ -x "$f" ] || { echo "compare: $f is missing; build first (scripts/build)" >&2; exit 1; }
done
missing=()
for p in hyperfine ledger hledger time; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    echo "compare: installing ${missing[*]}"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

# One zone and a UTF-8 locale for all three, so that days and names read the same.
export TZ=${TZ:-America/New_York} LC_ALL=C.UTF-8
first=$(date -d "$(date +%Y-%m-01) -11 months" +%F) # the last 12 months, as coinhall counts them
after=$(date -d "$(date +%Y-%m-01) +1 month" +%F)
mkdir -p "$out"
echo "machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //'), $(date +%F)"

for n in "${sizes[@]}"; do
    dir=$out/book-$n journal=$out/book-$n.journal
    mkdir -p "$dir"
    [ -f "$dir/coinhall.json" ] || "$genbook" "$n" "$dir/coinhall.json" >/dev/null
    "$coinhall" --data-dir "$dir" export "$journal" --format ledger >/dev/null
    echo "== $n events: money file $(du -m "$dir/coinhall.json" | cut -f1) MB, journal $(du -m "$journal" | cut -f1) MB"

    # Agreement: the last 12 months by category, coinhall's report against both tools,
    # and every account's balance, ledger against hledger.
    "$coinhall" --data-dir "$dir" check
    "$coinhall" --data-dir "$dir" report --period last-12-months --tsv >"$out/coinhall-$n.tsv"
    ledger -f "$journal" bal --flat --no-total -b "$first" -e "$after" \
        --balance-format '%(account)\t%(scrub(display_total))\n' ^Income ^Expenses >"$out/ledger-period-$n.txt"
    ledger -f "$journal" bal --flat --no-total \
        --balance-format '%(account)\t%(scrub(display_total))\n' >"$out/ledger-all-$n.txt"
    tools=(coinhall ledger)
    if ! skipped hledger "$n"; then
        tools+=(hledger)
        hledger -f "$journal" bal --flat --no-total -b "$first" -e "$after" -O csv ^Income ^Expenses \
            >"$out/hledger-period-$n.csv"
        hledger -f "$journal" bal --flat --no-total -O csv >"$out/hledger-all-$n.csv"
    fi
    python3 - "$out" "$n" <<'PY'
import csv, decimal, re, sys, os
out, n = sys.argv[1], sys.argv[2]
def num(text):
    return decimal.Decimal(text.replace(" USD", "")).normalize()
def segment(name):  # the journal's account name for a category (LedgerExport::accountSegment)
    return re.sub(r"\s+", " ", name).strip().replace(";", ",").replace(":", "\u2236")
def tabbed(path):
    rows = {}
    for line in open(path, encoding="utf-8"):
        name, amount = line.rstrip("\n").rsplit("\t", 1)
        rows[name] = num(amount)
    return rows
def from_csv(path):
    rows = list(csv.reader(open(path, encoding="utf-8")))[1:]
    return {r[0]: num(r[1]) for r in rows}
report = {}
for line in open(os.path.join(out, "coinhall-%s.tsv" % n), encoding="utf-8"):
    section, name, amount = line.rstrip("\n").split("\t")
    if section == "income-by-category":
        report["Income:" + segment(name)] = -num(amount)
    elif section == "spending-by-category":
        report["Expenses:" + segment(name)] = num(amount)
report = {k: v for k, v in report.items() if v != 0}
checks = [("coinhall report", report, "ledger bal", tabbed(os.path.join(out, "ledger-period-%s.txt" % n)))]
if os.path.exists(os.path.join(out, "hledger-period-%s.csv" % n)):
    checks.append(("coinhall report", report, "hledger bal", from_csv(os.path.join(out, "hledger-period-%s.csv" % n))))
    checks.append(("ledger bal", tabbed(os.path.join(out, "ledger-all-%s.txt" % n)),
                   "hledger bal", from_csv(os.path.join(out, "hledger-all-%s.csv" % n))))
for a, x, b, y in checks:
    if x != y:
        for k in sorted(set(x) | set(y)):
            if x.get(k) != y.get(k):
                print("  %s: %s %s, %s %s" % (k, a, x.get(k), b, y.get(k)))
        sys.exit("compare: %s and %s disagree at %s" % (a, b, n))
    print("  agree: %s and %s, %d accounts" % (a, b, len(x)))
PY

    # Timing: medians of whole processes, then one run each under GNU time for the peak memory.
    r=${runs:-$([ "$n" -ge 1000000 ] && echo 3 || echo 10)}
    names=() cmds=()
    if ! skipped coinhall "$n"; then
        names+=("coinhall report" "coinhall check")
        cmds+=("$coinhall --data-dir $dir report --period last-12-months" "$coinhall --data-dir $dir check")
    fi
    skipped ledger "$n" || { names+=("ledger bal"); cmds+=("ledger -f $journal bal"); }
    skipped hledger "$n" || { names+=("hledger bal"); cmds+=("hledger -f $journal bal"); }
    args=()
    for i in "${!cmds[@]}"; do args+=(-n "${names[$i]}" "${cmds[$i]}"); done
    hyperfine -N --style none --warmup 1 --runs "$r" --export-json "$out/times-$n.json" "${args[@]}" 2>/dev/null
    : >"$out/memory-$n.txt"
    for i in "${!cmds[@]}"; do
        kb=$( { /usr/bin/time -f '%M' ${cmds[$i]} >/dev/null; } 2>&1 | tail -n 1)
        printf '%s\t%s\n' "${names[$i]}" "$kb" >>"$out/memory-$n.txt"
    done
    python3 - "$out" "$n" "$r" <<'PY'
import json, sys, os
out, n, runs = sys.argv[1], sys.argv[2], sys.argv[3]
times = {r["command"]: r for r in json.load(open(os.path.join(out, "times-%s.json" % n)))["results"]}
memory = dict(line.rstrip("\n").split("\t") for line in open(os.path.join(out, "memory-%s.txt" % n)))
base = times.get("coinhall report", {}).get("median")
print("| %s events | median (%s runs) | mean user + system | peak memory | × coinhall report |" % (n, runs))
print("|---|---|---|---|---|")
for name, r in times.items():
    ratio = "%.1f ×" % (r["median"] / base) if base else ""
    print("| `%s` | %.3f s | %.2f + %.2f s | %d MiB | %s |" % (name, r["median"], r["user"], r["system"],
                                                         int(memory[name]) // 1024, ratio))
PY
done
