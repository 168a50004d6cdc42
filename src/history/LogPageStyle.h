// The look of the log's page. No "<" and no "&", so that the page stays well-formed XML.
#pragma once

inline constexpr const char* szLogPageStyle = R"(
:root{color-scheme:light dark;--paper:#fff;--ink:#1b1f24;--soft:#59636e;--line:#d5dbe1;--band:#f3f5f7;
--up:#2e8b57;--warning:#e0a100;--down:#c0262d;--none:#8a949e;--mark:#5c4200;--stroke:#7d0f16;--sign:#fff}
@media (prefers-color-scheme:dark){:root{--paper:#14181c;--ink:#e8ecf0;--soft:#a3adb8;--line:#38414a;--band:#1e242a;
--up:#4fb97f;--warning:#f0b92e;--down:#ef5d60;--none:#7d8892;--mark:#4a3600;--stroke:#6d1417;--sign:#14181c}}
*{box-sizing:border-box}
body{margin:0 auto;max-width:70rem;padding:1.5rem 1.25rem 3rem;background:var(--paper);color:var(--ink);
font:16px/1.5 system-ui,-apple-system,"Segoe UI",Roboto,"Noto Sans","DejaVu Sans",sans-serif;overflow-wrap:anywhere}
h1{font-size:1.9rem;line-height:1.2;margin:.2rem 0 .6rem;display:flex;gap:.7rem;align-items:center}
h1 .icon{width:2.1rem;height:2.1rem;flex:none}
h2{font-size:1.25rem;margin:2.2rem 0 .6rem;border-bottom:2px solid var(--line);padding-bottom:.25rem}
p{margin:.35rem 0}
.kind,.note,footer{color:var(--soft);font-size:.9rem}
.lead p:first-child{font-size:1.1rem}
dl{display:grid;grid-template-columns:max-content 1fr;gap:.3rem 1.2rem;margin:1.2rem 0 0;padding:.9rem 1.1rem;
background:var(--band);border-radius:.5rem}
dt{font-weight:600}
dd{margin:0}
dd ul{margin:0;padding:0;list-style:none}
.icon{width:1rem;height:1rem;vertical-align:-.15rem;margin-right:.4rem}
.state{white-space:nowrap}
.wide{overflow-x:auto}
table{border-collapse:collapse;width:100%;font-size:.92rem}
th,td{text-align:left;vertical-align:top;padding:.35rem .6rem .35rem 0;border-bottom:1px solid var(--line)}
thead th{color:var(--soft);font-weight:600;border-bottom:2px solid var(--line);white-space:nowrap}
.n{text-align:right;white-space:nowrap;font-variant-numeric:tabular-nums}
.t{white-space:nowrap;font-variant-numeric:tabular-nums}
.when{min-width:8rem}
td.site,th.site{min-width:9rem;font-weight:600}
.strips{display:grid;grid-template-columns:minmax(8rem,16rem) 1fr;gap:.45rem 1rem;align-items:center}
.strips .name{font-size:.92rem;font-weight:600}
.strip{display:block;width:100%;height:24px;background:var(--band)}
.axis{grid-column:2;position:relative;height:1.4rem;font-size:.78rem;color:var(--soft)}
.axis span{position:absolute;white-space:nowrap;padding-left:.25rem;border-left:1px solid var(--soft)}
.legend{display:flex;flex-wrap:wrap;gap:.3rem 1.4rem;margin:.6rem 0;padding:0;list-style:none;font-size:.9rem}
.legend svg.key{width:2.4rem;height:1.2rem;vertical-align:-.25rem;margin-right:.45rem;background:var(--band)}
.s-up{fill:var(--up)}.s-warning{fill:var(--warning)}.s-down{fill:var(--down)}.s-off{fill:none}.s-unwatched{fill:none}
.mark{fill:var(--mark)}.dash{fill:var(--none)}
.stroke{stroke:var(--stroke);stroke-width:1;fill:none}
.sign{stroke:var(--sign);stroke-width:2;fill:none;stroke-linecap:round;stroke-linejoin:round}
.line{stroke:var(--none);stroke-width:2;fill:none}
.ring{fill:none;stroke:var(--none);stroke-width:1.6}.dashed{stroke-dasharray:3 2}
.day{stroke:var(--paper);stroke-width:1;vector-effect:non-scaling-stroke;fill:none;opacity:.7}
a{color:inherit}
.s-median{fill:var(--soft)}.s-most{fill:url(#p-most)}.s-longest{fill:var(--ink)}
.hours{min-width:44rem;table-layout:fixed}.hours th:first-child{width:5.5rem}
.hours thead th{text-align:center;padding:.2rem 0}.hours thead th:first-child{text-align:left}
.hours td{position:relative;height:2rem;padding:0;text-align:center;vertical-align:middle;border:1px solid var(--line)}
.hours i{position:absolute;left:0;right:0;bottom:0;background:var(--warning);opacity:.6;min-height:3px}
.hours b{position:relative}.hours tr:last-child th,.hours tr:last-child td{border-top:2px solid var(--soft)}
.part{content-visibility:auto;min-width:46rem}
.entries{table-layout:fixed}
.entries col{width:18%}.entries col:nth-child(1){width:11%}.entries col:nth-child(2){width:12%}
.entries col:nth-child(3){width:30%}.entries col:nth-child(4){width:21%}.entries col:nth-child(5){width:8%}
.entries td:nth-child(1),.entries td:nth-child(5){white-space:nowrap;font-variant-numeric:tabular-nums}
.entries td:nth-child(5){text-align:right}.entries td:nth-child(6),.entries th:nth-child(6){padding-left:.6rem}
.entries td:nth-child(2){position:relative;padding-left:1.4rem}
.entries td:nth-child(2)::before{position:absolute;left:0;top:.62rem;width:1rem;height:1rem;
font:bold .75rem/1rem sans-serif;text-align:center;color:var(--sign)}
.entries .up td:nth-child(2)::before{content:"\2713";background:var(--up);border-radius:50%}
.entries .warning td:nth-child(2)::before{content:"!";background:var(--warning);clip-path:polygon(50% 0,100% 100%,0 100%)}
.entries .down td:nth-child(2)::before{content:"\2715";background:var(--down);
clip-path:polygon(30% 0,70% 0,100% 30%,100% 70%,70% 100%,30% 100%,0 70%,0 30%)}
.entries .off td:nth-child(2)::before{content:"";border:.1rem solid var(--none);border-radius:50%}
.entries tbody th{background:var(--band);padding:.45rem .6rem;font-weight:600}
.entries tbody th span{color:var(--soft);font-weight:400}
.entries tr.gap td{padding:.7rem .6rem;color:var(--soft);font-style:italic;text-align:center}
.entries .raw{font-family:ui-monospace,"DejaVu Sans Mono",monospace;font-size:.85em}
tr.down td.state,tr.warning td.state,.entries .down td:nth-child(2),.entries .warning td:nth-child(2){font-weight:600}
.outages th.site{min-width:14rem}.outages td:nth-child(5){min-width:9rem}
.outages td:nth-child(4){min-width:5.5rem}.outages td:nth-child(6){white-space:nowrap}
.Emphasis{font-weight:600;font-style:italic}
.defs{position:absolute}
footer{margin-top:2.5rem;border-top:1px solid var(--line);padding-top:.6rem}
@media screen{.sites thead th{white-space:normal;overflow-wrap:normal}.sites th.site,.outages th.site{min-width:15rem}.outages td:nth-child(6){white-space:normal;min-width:13rem}}
@media (max-width:40rem){body{padding:1rem .8rem 2rem}h1{font-size:1.45rem}dl{grid-template-columns:1fr;gap:.1rem}
dd{margin-bottom:.5rem}.strips{grid-template-columns:1fr;gap:.15rem}.strips .name{margin-top:.5rem}.axis{grid-column:1}
table{font-size:.9rem}
.sites,.outages,.entries,.sites tbody,.outages tbody,.entries tbody,.sites tr,.outages tr,.entries tr,.entries tbody th,
.sites th,.outages th,.sites td,.outages td,.entries td{display:block}
.sites thead,.outages thead,.entries thead,.entries colgroup{display:none}
.sites tr,.outages tr{margin:0 0 .7rem;padding:.4rem .7rem;background:var(--band);border-radius:.5rem}
.sites th.site,.outages th.site{padding:.2rem 0;border:0}
.sites td,.outages td,.outages td:nth-child(6){display:flex;justify-content:flex-end;gap:.35rem;padding:.15rem 0;border:0;
text-align:right;white-space:normal}
.sites td::before,.outages td::before{content:attr(data-name);color:var(--soft);text-align:left;flex:none;max-width:45%;margin-right:auto;padding-right:.6rem}
.part{min-width:0}.entries tr{padding:.3rem 0;border-bottom:1px solid var(--line)}.entries td{padding:.05rem 0;border:0}
.entries td:nth-child(1),.entries td:nth-child(2){display:inline-block;margin-right:.8rem}.entries td:nth-child(2){padding-left:1.4rem}
.axis span:last-child{transform:translateX(-100%);padding:0 .25rem 0 0;border-width:0 1px 0 0;border-right-style:solid}
.entries td:nth-child(2)::before{top:.25rem}.entries td:nth-child(5){display:none}.entries td:nth-child(6){padding-left:0}}
@media print,(max-width:60rem){.axis span:nth-child(even){display:none}}
@media print{:root{color-scheme:light;--paper:#fff;--ink:#000;--soft:#444;--line:#bbb;--band:#f2f2f2;
--up:#2e8b57;--warning:#e0a100;--down:#c0262d;--none:#777;--mark:#5c4200;--stroke:#7d0f16;--sign:#fff}
:root{font-size:9.5pt}
body{max-width:none;padding:0;font-size:1rem}.wide{overflow:visible}.part{content-visibility:visible;min-width:0}h2{break-after:avoid}
table{font-size:.84rem;line-height:1.3}thead th{white-space:normal}th,td{padding-right:.4rem}thead th:last-child,.entries td:nth-child(2){white-space:nowrap}
.sites th.site{min-width:12rem}.note,.legend{break-after:avoid}
.entries{font-size:.78rem;line-height:1.25}.entries th,.entries td{padding-top:.1rem;padding-bottom:.1rem}
.entries td:nth-child(2)::before{top:.12rem;width:.8rem;height:.8rem;font-size:.6rem;line-height:.8rem}
.entries tbody th{padding-top:.2rem;padding-bottom:.1rem}
tr,.strip,.name,.strips{break-inside:avoid}thead{display:table-header-group}.entries tbody th{break-after:avoid}
svg,dl,.hours i,.entries tbody th,.entries td::before{print-color-adjust:exact;-webkit-print-color-adjust:exact}}
@page{margin:15mm}
)";
