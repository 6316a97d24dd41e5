#pragma once

// The report's style sheet, inline so the page stands alone.
inline const char *reportStyle() {
    return R"(
body { font: 15px/1.45 system-ui, sans-serif; color: #1d232b; margin: 0 auto; max-width: 60rem;
       padding: 1.5rem; background: #fff; }
h1 { font-size: 1.6rem; margin: 0 0 .5rem; }
h2 { font-size: 1.25rem; border-bottom: 2px solid #d5dbe3; padding-bottom: .2rem; margin-top: 2rem; }
h3 { font-size: 1.05rem; margin: 1.2rem 0 .4rem; }
table { border-collapse: collapse; margin: .3rem 0 .8rem; }
th, td { text-align: left; padding: .15rem .8rem .15rem 0; vertical-align: top; }
th { font-weight: 600; color: #4a5563; }
.verdict { display: inline-block; padding: 0 .5rem; border-radius: .3rem; font-weight: 600; }
.verdict.passed { background: #d8f3dc; color: #1b5e20; }
.verdict.failed { background: #fde0e0; color: #8e1c1c; }
.verdict.warning { background: #fff1c9; color: #7a5200; }
.verdict.aborted, .verdict.invalid, .verdict.not-applicable { background: #e8ebef; color: #39424e; }
ul.log, ul.charge { margin: .2rem 0 .6rem; padding-left: 1.2rem; }
ul.charge li { font-weight: 600; }
.note { color: #5a6573; font-style: italic; }
svg.chart { width: 100%; max-width: 640px; height: auto; display: block; margin: .5rem 0 1rem;
            font-size: 11px; }
svg .axes line { stroke: #5a6573; }
svg .grid { stroke: #e3e7ec; }
svg .tick, svg .legend text, svg .marker-label, svg .rule-label { fill: #39424e; }
svg .axis-label { fill: #39424e; font-size: 12px; }
svg .chart-title { font-weight: 600; font-size: 13px; fill: #1d232b; }
svg polyline.series { fill: none; stroke-width: 2; }
svg rect.key { stroke: none; }
svg .series.expected { stroke: #1d232b; } svg .key.expected { fill: #1d232b; }
svg .series.charge { stroke: #1565c0; } svg .key.charge { fill: #1565c0; }
svg .series.display { stroke: #ef8a00; stroke-width: 1; } svg .key.display { fill: #ef8a00; }
svg .series.ac { stroke: #2e7d32; stroke-dasharray: 5 3; } svg .key.ac { fill: #2e7d32; }
svg .series.full { stroke: #1565c0; } svg .key.full { fill: #1565c0; }
svg .series.design { stroke: #5a6573; stroke-dasharray: 6 4; } svg .key.design { fill: #5a6573; }
svg .region.pass { fill: #e6f6e9; }
svg .region.warn { fill: #fff1c9; }
svg .region.fail { fill: #fde0e0; }
svg .rule { stroke: #8e1c1c; stroke-width: 1.5; stroke-dasharray: 4 3; }
svg .key.rule { fill: #8e1c1c; }
svg .rule.start, svg .rule.end { stroke: #5a6573; }
svg .marker { stroke: #fff; stroke-width: 2; fill: #1d232b; }
svg .marker.fail { fill: #c62828; }
svg .marker.warn { fill: #c77700; }
svg .marker.pass { fill: #2e7d32; }
svg .marker.start, svg .marker.end { fill: #1565c0; }
@media print { body { max-width: none; padding: 0; } section { break-inside: avoid-page; } }
)";
}
