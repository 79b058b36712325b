#include "cli/demo/report_style.h"

namespace velmora::cli {

const char* const REPORT_STYLE = R"css(
:root { color-scheme: light dark;
  --page: #eef0ee; --panel: #fbfcfb; --line: #d5dad7; --grid: #e3e7e4; --zero: #b3bdb8;
  --text: #1b2325; --soft: #53605f; --accent: #07706b; --warm: #a34a0c; --dry: #6d7d8a;
  --dry-fill: #c9d1d6; --wet-fill: #07706b; --code: #f2f4f2; }
@media (prefers-color-scheme: dark) { :root {
  --page: #101416; --panel: #171d20; --line: #2b3437; --grid: #232b2e; --zero: #4a5659;
  --text: #dde4e3; --soft: #94a3a3; --accent: #45c8bd; --warm: #f0a35e; --dry: #8395a3;
  --dry-fill: #36424a; --wet-fill: #2f9d95; --code: #12181a; } }
* { box-sizing: border-box; }
html { -webkit-text-size-adjust: 100%; }
body { margin: 0; background: var(--page); color: var(--text);
  font: 15px/1.5 system-ui, -apple-system, "Segoe UI", "Noto Sans", "DejaVu Sans", sans-serif; }
.page { max-width: 1360px; margin: 0 auto; padding: 20px clamp(12px, 2.4vw, 32px) 40px; }
header { margin: 4px 0 18px; }
.brand { display: flex; align-items: center; gap: 8px; color: var(--soft); font-size: 13px;
  letter-spacing: .04em; }
.brand svg { width: 34px; height: 18px; }
.brand path { fill: none; stroke: var(--accent); stroke-width: 2; stroke-linecap: round; }
h1 { margin: 6px 0 2px; font-size: clamp(26px, 3.2vw, 36px); line-height: 1.15; font-weight: 600;
  letter-spacing: -.015em; overflow-wrap: anywhere; }
.summary { margin: 0; max-width: 76ch; color: var(--soft); }
h2 { margin: 0; font-size: 15px; font-weight: 600; }
.hint { margin: 0; color: var(--soft); font-size: 13px; }
.tiles { display: flex; flex-wrap: wrap; gap: 1px; margin: 0 0 14px; background: var(--line);
  border: 1px solid var(--line); border-radius: 8px; overflow: hidden; }
.tiles div { flex: 1 1 150px; background: var(--panel); padding: 10px 14px; }
.tiles dt { color: var(--soft); font-size: 12.5px; }
.tiles dd { margin: 0; font-size: 18px; font-weight: 600; font-variant-numeric: tabular-nums;
  letter-spacing: -.01em; }
.cards { display: grid; gap: 14px; grid-template-columns: minmax(0, 1fr); }
@media (min-width: 980px) { .cards { grid-template-columns: repeat(2, minmax(0, 1fr)); }
  .full { grid-column: 1 / -1; } }
.card { min-width: 0; background: var(--panel); border: 1px solid var(--line); border-radius: 8px;
  padding: 12px 14px 10px; container-type: inline-size; break-inside: avoid; }
.card .head { display: flex; flex-wrap: wrap; align-items: baseline; justify-content: space-between;
  gap: 0 16px; margin-bottom: 4px; }
.sound + .sound { margin-top: 14px; padding-top: 12px; border-top: 1px solid var(--line); }
.sound .head { align-items: center; justify-content: flex-start; gap: 4px 16px; }
.sound audio { margin-left: auto; }
.sound .levels { color: var(--soft); font-size: 13px; font-variant-numeric: tabular-nums; }
audio { height: 36px; width: min(100%, 340px); }
svg.plot { width: 100%; height: auto; overflow: visible; }
svg.narrow, svg.wide, svg.broad { display: none; } svg.medium { display: block; }
@container (max-width: 479.9px) { svg.narrow { display: block; } svg.medium { display: none; } }
@container (min-width: 760px) { svg.wide { display: block; } svg.medium { display: none; } }
@container (min-width: 1060px) { svg.broad { display: block; } .full svg.wide { display: none; } }
svg text { font-size: 12px; fill: var(--soft); font-variant-numeric: tabular-nums; }
svg text.legend, svg text.note { fill: var(--text); }
svg text.note { paint-order: stroke; stroke: var(--panel); stroke-width: 4px; stroke-linejoin: round; }
svg .frame { fill: none; stroke: var(--line); stroke-width: 1; }
svg .grid { fill: none; stroke: var(--grid); stroke-width: 1; }
svg .grid.minor { stroke-opacity: .6; }
svg .grid.zero { stroke: var(--zero); }
svg .line { fill: none; stroke-width: 1.7; stroke-linejoin: round; stroke-linecap: round; }
svg .line.before { stroke: var(--dry); stroke-width: 1.3; }
svg .line.after, svg .line.left { stroke: var(--accent); }
svg .line.right { stroke: var(--warm); stroke-dasharray: 5 4; }
svg .area { stroke: none; fill-opacity: .55; }
svg .area.before { fill: var(--dry-fill); } svg .area.after { fill: var(--wet-fill); }
svg .band.before { fill: var(--dry); } svg .band.after { fill: var(--wet-fill); }
svg .marker { fill: var(--panel); stroke: var(--accent); stroke-width: 2; }
.scroll { overflow-x: auto; }
table { width: 100%; border-collapse: collapse; font-size: 14px; font-variant-numeric: tabular-nums; }
th { text-align: left; font-weight: 500; color: var(--soft); font-size: 12.5px; }
th, td { padding: 5px 12px 5px 0; border-bottom: 1px solid var(--grid); vertical-align: baseline; }
tr:last-child td { border-bottom: 0; }
th:last-child, td:last-child { padding-right: 0; }
td.num, th.num { text-align: right; white-space: nowrap; }
td.range { color: var(--soft); white-space: nowrap; }
td .sub { display: block; color: var(--soft); font-size: 12.5px; overflow-wrap: anywhere; }
tfoot td { font-weight: 600; border-top: 1px solid var(--line); }
.set { color: var(--accent); font-weight: 600; }
code, pre { font-family: ui-monospace, "DejaVu Sans Mono", "Liberation Mono", Consolas, monospace; }
code { font-size: 13px; }
.meter { display: block; width: 100%; min-width: 72px; height: 8px; }
.meter .rail { fill: var(--grid); } .meter .fill { fill: var(--dry); }
.meter.changed .fill, .time .fill { fill: var(--wet-fill); }
pre { margin: 6px 0 2px; padding: 10px 12px; overflow-x: auto; background: var(--code);
  border: 1px solid var(--grid); border-radius: 6px; font-size: 13px; line-height: 1.5; tab-size: 4; }
pre.wrap { white-space: pre-wrap; overflow-wrap: anywhere; }
pre .c { color: var(--soft); } pre .k { color: var(--accent); } pre .n, pre .s { color: var(--warm); }
dl.facts { display: grid; grid-template-columns: max-content minmax(0, 1fr); gap: 3px 16px; margin: 6px 0;
  font-size: 14px; }
dl.facts dt { color: var(--soft); } dl.facts dd { margin: 0; overflow-wrap: anywhere; }
footer { margin-top: 16px; color: var(--soft); font-size: 13px; }
@container (max-width: 479.9px) { .narrow-hide { display: none; }
  .sound audio { margin-left: 0; width: 100%; }
  dl.facts { grid-template-columns: minmax(0, 1fr); gap: 0; } dl.facts dd { margin-bottom: 5px; } }
@media print {
  @page { margin: 12mm; }
  :root { --page: #fff; --panel: #fff; --line: #c9cfcc; --grid: #e3e7e4; --zero: #b3bdb8; --text: #1b2325;
    --soft: #53605f; --accent: #07706b; --warm: #a34a0c; --dry: #6d7d8a; --dry-fill: #c9d1d6;
    --wet-fill: #07706b; --code: #fff; }
  body { font-size: 10.5pt; print-color-adjust: exact; -webkit-print-color-adjust: exact; }
  .page { max-width: none; padding: 0; } audio { display: none; }
  .cards { grid-template-columns: repeat(2, minmax(0, 1fr)); gap: 10px; } .full { grid-column: 1 / -1; }
  pre { white-space: pre-wrap; overflow-wrap: anywhere; font-size: 8.5pt; } }
)css";

} // namespace velmora::cli
