#pragma once

namespace brisk::logbook {

// The page's looks: dark and light, on paper, and in a narrow window.
inline constexpr char kReportStyle[] = R"css(
:root { color-scheme: light dark; --page: #ffffff; --text: #1b1f24; --soft: #57606a; --line: #d0d7de; --good: #1a7f37;
  --bad: #9a4f00; --waiting: #d8dee4; --warming: #f2cc60; --tracking: #54aeff; --pausing: #b6c2cf; --fps: #0550ae;
  --limit: #cf222e; --average: #1a7f37; --state: #1b1f24; --mark: #fff8c5; }
@media (prefers-color-scheme: dark) { :root { --page: #0d1117; --text: #e6edf3; --soft: #9198a1; --line: #3d444d;
  --good: #3fb950; --bad: #e3973e; --waiting: #3d444d; --warming: #9e6a03; --tracking: #1f6feb; --pausing: #30363d;
  --fps: #79c0ff; --limit: #ff7b72; --average: #3fb950; --state: #e6edf3; --mark: #3b2e00; } }
body { margin: 0 auto; max-width: 66rem; padding: 1.5rem; background: var(--page); color: var(--text);
  font: 1rem/1.5 system-ui, sans-serif; }
h1 { font-size: 1.6rem; } h2 { font-size: 1.25rem; margin-top: 2.5rem; border-top: 1px solid var(--line); padding-top: 1rem; }
h3 { font-size: 1.05rem; margin-bottom: .3rem; }
a { color: var(--fps); } a:focus-visible, summary:focus-visible { outline: 3px solid var(--limit); outline-offset: 2px; }
table { border-collapse: collapse; width: 100%; margin: .8rem 0; font-size: .9rem; }
caption { text-align: left; font-weight: 600; } th, td { border-bottom: 1px solid var(--line); padding: .25rem .6rem;
  text-align: left; vertical-align: top; }
.offer { color: var(--good); font-weight: 600; } .no-offer { color: var(--bad); font-weight: 600; }
.next { border-left: 4px solid var(--line); padding-left: .8rem; } .soft { color: var(--soft); }
ol.proof, ol.log { font: .82rem/1.5 ui-monospace, monospace; list-style: none; padding-left: 0; overflow-x: auto; }
ol.log li:target { background: var(--mark); } ol.log li { white-space: pre-wrap; overflow-wrap: anywhere; }
.number { display: inline-block; min-width: 4.5rem; color: var(--soft); text-align: right; padding-right: 1rem; }
svg.chart { width: 100%; height: auto; font: 11px system-ui, sans-serif; }
svg .waiting { fill: var(--waiting); } svg .warming { fill: var(--warming); } svg .tracking { fill: var(--tracking); }
svg .pausing { fill: var(--pausing); } svg .assumed { opacity: .6; } svg text { fill: var(--text); }
svg text.state { fill: var(--state); } svg .axis { stroke: var(--soft); }
svg .fps { fill: none; stroke: var(--fps); stroke-width: 2; } svg line.limit { stroke: var(--limit); stroke-dasharray: 6 4; }
svg text.limit { fill: var(--limit); } svg line.average { stroke: var(--average); stroke-dasharray: 2 3; }
svg text.average { fill: var(--average); } svg .rejected { fill: none; stroke: var(--limit); stroke-width: 2; }
@media print { body { max-width: none; padding: 0; } a { color: inherit; text-decoration: none; } section { break-inside: avoid; } }
)css";

} // namespace brisk::logbook
