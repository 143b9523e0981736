// Style sheet and script of the page. Colours are those of Okabe and Ito (Color Universal Design,
// 2008), darker or lighter where the contrast with the ground needs it.

#include "host/uscite/html/html_risorse.h"

namespace compensa {

const std::string_view kStile = R"css(
:root{--fondo:#fff;--carta:#f6f7f8;--testo:#1b1f23;--tenue:#555d66;--riga:#c9ced4;--blu:#0072b2;
--verde:#00664a;
--arancio:#8a5a00;--rosso:#b03a00;--rosa:#fde6da;--segno:#e69f00;--k:1}
@media (prefers-color-scheme:dark){:root{--fondo:#14181c;--carta:#1d2329;--testo:#e6e9ec;
--tenue:#a9b3bd;--riga:#434c56;
--blu:#56b4e9;--verde:#4fd1a8;--arancio:#f0b840;--rosso:#ff9361;--rosa:#45210f;
--segno:#f0b840}}
*{box-sizing:border-box}
html{background:var(--fondo);color:var(--testo);
font:16px/1.45 system-ui,"Segoe UI","DejaVu Sans",sans-serif}
body{max-width:1340px;margin:0 auto;padding:1rem}
h1{margin:0 0 .6rem;font-size:1.8rem;line-height:1.2;overflow-wrap:anywhere}
h2{margin:2rem 0 .7rem;padding-bottom:.2rem;border-bottom:2px solid var(--blu);font-size:1.3rem}
h3{margin:1.4rem 0 .4rem;font-size:1.05rem}
a{color:var(--blu)}
:focus-visible{outline:3px solid var(--blu);outline-offset:2px}
.soprattitolo{margin:0;color:var(--tenue)}
nav{display:flex;flex-wrap:wrap;gap:.3rem 1.2rem;margin:1rem 0;padding:.5rem 0;
border-block:1px solid var(--riga)}
dl{margin:0}dt{color:var(--tenue)}dd{margin:0;overflow-wrap:anywhere}
.dati div,.scheda div{display:grid;grid-template-columns:minmax(8rem,15rem) 1fr;gap:0 1rem;
padding:.12rem 0}
.glossario dt{color:inherit;font-weight:600}.glossario div{margin-bottom:.4rem}
.schede{display:grid;align-items:start;
grid-template-columns:repeat(auto-fit,minmax(min(100%,26rem),1fr));gap:1rem}
.scheda{padding:.8rem 1rem;border:1px solid var(--riga);border-left:8px solid var(--tenue);
border-radius:6px;background:var(--carta)}
.scheda h3{margin:0 0 .5rem}.scheda div{grid-template-columns:minmax(7rem,11rem) 1fr}
.icona{display:inline-block;width:1.6em;height:1.6em;line-height:1.6em;border-radius:50%;
text-align:center;background:var(--tenue);color:var(--fondo)}
.bene{border-left-color:var(--verde)}.bene .icona{background:var(--verde)}
.attenzione{border-left-color:var(--arancio)}.attenzione .icona{background:var(--arancio)}
.male{border-left-color:var(--rosso)}.male .icona{background:var(--rosso)}
.disegno .riga{display:inline;margin:0;color:var(--tenue)}
.disegno>label{margin-right:.9rem}
.zoom{float:right}
button{font:inherit;color:inherit;background:var(--carta);border:1px solid var(--tenue);
border-radius:4px;padding:.1rem .6rem;margin-left:.3rem;cursor:pointer}
figure{margin:.6rem 0}
#disegno{display:block;width:100%;max-height:90vh;border:1px solid var(--riga);border-radius:6px;
background:var(--fondo);cursor:grab;overflow:hidden;touch-action:pan-y}
svg text{font-size:13px;fill:var(--testo);stroke:var(--fondo);stroke-width:3px;paint-order:stroke;
stroke-linejoin:round}
.am{text-anchor:middle}.af{text-anchor:end}
.p>use,.e>g{transform:scale(var(--k))}
.v{fill:none;stroke:var(--blu);stroke-width:1.1px;vector-effect:non-scaling-stroke}
.vv{stroke-width:2.4px}.vd{stroke-dasharray:7 4}.vs{stroke-dasharray:1.5 3.5}
.v1{stroke:var(--segno)}.v2{stroke:var(--rosso)}.vn{stroke:var(--tenue);stroke-width:1px;
stroke-dasharray:2 6}
path.v:hover{stroke-width:4px}
.fr{fill:var(--blu);stroke:var(--fondo);stroke-width:.8px;pointer-events:none}
.fr1{fill:var(--segno)}.fr2{fill:var(--rosso)}
.ell ellipse,.l1{fill:none;stroke:var(--verde);stroke-width:1.5px;
vector-effect:non-scaling-stroke}
.ell95 ellipse,.l95{fill:none;stroke:var(--verde);stroke-width:1.5px;stroke-dasharray:6 3;
vector-effect:non-scaling-stroke}
.ell ellipse,.ell95 ellipse{pointer-events:stroke}
#pf{fill:var(--blu);stroke:var(--fondo)}#pc{fill:var(--verde);stroke:var(--fondo)}
#pi{fill:var(--fondo);stroke:var(--verde);stroke-width:2px}#pn{fill:none;stroke:var(--tenue);
stroke-width:2px}
#ps{fill:var(--fondo);stroke:var(--testo);stroke-width:1.4px}
#w1{fill:var(--fondo);stroke:var(--arancio);stroke-width:1.8px}
#w2 path:first-child{fill:var(--rosso);stroke:var(--fondo)}
#w2 path:last-child{stroke:var(--fondo);stroke-width:1.8px}
.e path{stroke:var(--tenue);stroke-width:.8px}.e{pointer-events:none}
.e1,.e2,.e3,.e4,.e5{display:none}
.z1 .e1,.z2 .e2,.z3 .e3,.z4 .e4,.z5 .e5{display:inline}
#scala path{fill:none;stroke:var(--testo);stroke-width:1.6px}#nord path{fill:var(--testo)}
#scala,#nord{pointer-events:none}
#st-visuali:not(:checked)~figure .visuali,#st-segni:not(:checked)~figure .segni,
#st-ell:not(:checked)~figure .ell,
#st-ell95:not(:checked)~figure .ell95,#st-punti:not(:checked)~figure .punti,
#st-nomi:not(:checked)~figure .nomi{display:none}
.legenda{display:flex;flex-wrap:wrap;gap:.2rem 1.3rem;margin:.5rem 0;padding:0;list-style:none;
font-size:.9rem}
.legenda svg{width:44px;height:20px;margin-right:.4rem;vertical-align:middle}
figcaption p{margin:.3rem 0;font-size:.9rem;color:var(--tenue)}
.tabella{content-visibility:auto;contain-intrinsic-size:auto 500px}
.filtri{display:flex;flex-wrap:wrap;gap:.3rem 1.2rem;align-items:center;margin-bottom:.3rem}
.filtri[hidden]{display:none}
.filtri span{color:var(--tenue)}
input[type=search]{font:inherit;color:inherit;background:var(--fondo);
border:1px solid var(--tenue);border-radius:4px;padding:.15rem .4rem}
.scorri{overflow:auto;max-height:75vh;border:1px solid var(--riga);border-radius:6px}
table{border-collapse:collapse;width:100%;font-variant-numeric:tabular-nums;font-size:.9rem}
caption{padding:.5rem .6rem;text-align:left;color:var(--tenue)}
th,td{padding:.22rem .5rem;text-align:left;border-bottom:1px solid var(--riga)}
td{white-space:nowrap}
thead th{position:sticky;top:0;background:var(--carta);vertical-align:bottom}
th button{margin:0;padding:0;border:0;background:none;font-weight:600;text-align:inherit}
th small{font-weight:400;color:var(--tenue);white-space:nowrap}.n{text-align:right}
th[aria-sort=ascending] button::after{content:" ▲"}
th[aria-sort=descending] button::after{content:" ▼"}
tr.sosp td{background:var(--rosa)}tr.sosp td:last-child{font-weight:700;color:var(--rosso)}
.firma{display:flex;flex-wrap:wrap;gap:2rem 4rem;margin:3rem 0}.firma p{flex:1 1 16rem;margin:0}
.firma span{display:block;height:3.5rem;border-bottom:1px solid var(--testo)}
pre{overflow:auto;max-height:80vh;margin:0;padding:.8rem;border:1px solid var(--riga);
border-radius:6px;background:var(--carta);
font:13px/1.35 ui-monospace,"DejaVu Sans Mono",monospace}
@page{size:A4;margin:14mm 12mm 16mm;@bottom-right{
content:"pagina " counter(page) " di " counter(pages);font:9pt sans-serif}}
@page larga{size:A4 landscape}
@media print{
:root{--fondo:#fff;--carta:#fff;--testo:#000;--tenue:#333;--riga:#999;--blu:#005b8f;
--verde:#00583f;--arancio:#6e4800;--rosso:#9a3300;--rosa:#fde6da;--segno:#b87e00}
html{font-size:10pt}body{max-width:none;padding:0}
nav,.filtri,.zoom,.aiuto,.disegno>input,.disegno>label,.disegno .riga{display:none!important}
.scheda,.icona,tr.sosp td,#disegno *{print-color-adjust:exact;-webkit-print-color-adjust:exact}
.scheda,figure,.firma,li,.glossario div{break-inside:avoid}h2,h3{break-after:avoid}
.schede{grid-template-columns:1fr 1fr}.scheda div{grid-template-columns:8.5rem 1fr}
#disegno{max-height:150mm}
#tabelle{page:larga}.tabella{content-visibility:visible}.scorri{overflow:visible;max-height:none;
border:0}
table{font-size:7.5pt}th,td{padding:.12rem .3rem}thead{display:table-header-group;
break-inside:avoid;break-after:avoid}thead th{position:static}caption,tr{break-inside:avoid}
caption{break-after:avoid}
th button{display:contents}th button::after{content:none!important}
#rapporto{break-before:page}pre{max-height:none;overflow:visible;border:0;padding:0;font-size:7pt}
}
)css";

const std::string_view kScript = R"js(
'use strict';
(() => {
const senzaAccenti = t => t.normalize('NFD').replace(/[\u0300-\u036f]/g, '').toLowerCase();
const ordine = new Intl.Collator('it', {numeric: true}).compare;
for (const e of document.querySelectorAll('.filtri,.zoom,.aiuto')) e.hidden = false;

for (const tabella of document.querySelectorAll('.tabella')) {
  const corpo = tabella.querySelector('tbody'), titoli = [...tabella.querySelectorAll('th')];
  const casella = tabella.querySelector('[type=search]');
  const sospette = tabella.querySelector('[type=checkbox]');
  const esito = tabella.querySelector('[role=status]'), testi = new Map();
  const testo = riga => {
    if (!testi.has(riga))
      testi.set(riga, senzaAccenti([...riga.cells].map(c => c.textContent).join(' ')));
    return testi.get(riga);
  };
  const filtra = () => {
    const cercato = senzaAccenti(casella.value.trim());
    let viste = 0;
    for (const riga of corpo.rows) {
      const vista = (!cercato || testo(riga).includes(cercato)) &&
        (!sospette?.checked || riga.className === 'sosp');
      riga.hidden = !vista;
      viste += vista;
    }
    esito.textContent = viste + ' righe su ' + corpo.rows.length;
  };
  let attesa;
  casella.addEventListener('input', () => {
    clearTimeout(attesa);
    attesa = setTimeout(filtra, 120);
  });
  sospette?.addEventListener('change', filtra);
  titoli.forEach((titolo, colonna) => titolo.firstChild.addEventListener('click', () => {
    const assoluto = 'abs' in titolo.dataset, prima = titolo.getAttribute('aria-sort');
    const verso = prima === 'none' ? (assoluto ? 'descending' : 'ascending')
      : prima === 'ascending' ? 'descending' : 'ascending';
    for (const t of titoli) t.setAttribute('aria-sort', 'none');
    titolo.setAttribute('aria-sort', verso);
    const segno = verso === 'ascending' ? 1 : -1, numero = titolo.className === 'n';
    const chiave = riga => {
      const t = riga.cells[colonna].textContent;
      return !numero ? t : assoluto ? Math.abs(parseFloat(t)) : parseFloat(t);
    };
    const righe = [...corpo.rows].map(riga => [chiave(riga), riga]);
    righe.sort(([a], [b]) => numero
      ? Number.isNaN(a) - Number.isNaN(b) || segno * (a - b) || 0
      : segno * ordine(a, b));
    corpo.append(...righe.map(r => r[1]));
  }));
}

const svg = document.getElementById('disegno');
if (!svg) return;
const intero = svg.getAttribute('viewBox').split(' ').map(Number), pixel = intero[2] / 1000;
let vista = [...intero], presa = null;
const scala = document.getElementById('scala'), nord = document.getElementById('nord');
const mostra = () => {
  const k = vista[2] / intero[2], u = pixel * k, [x, y, largo, alto] = vista;
  svg.setAttribute('viewBox', vista.join(' '));
  svg.style.setProperty('--k', k);
  for (let z = 1; z <= 5; ++z) svg.classList.toggle('z' + z, k <= 1.01 / 2 ** z);
  const decade = 10 ** Math.floor(Math.log10(largo * .2));
  const metri = decade * ([5, 2].find(n => n * decade <= largo * .2) ?? 1);
  scala.setAttribute('transform', `translate(${x + 24 * u} ${y + alto - 24 * u})scale(${u})`);
  scala.firstChild.setAttribute('d', `M0 -5V0H${metri / u}V-5`);
  scala.lastChild.textContent = metri >= 1000 ? metri / 1000 + ' km' : +metri.toPrecision(1) + ' m';
  nord.setAttribute('transform', `translate(${x + largo - 30 * u} ${y + 50 * u})scale(${u})`);
};
const luogo = e => new DOMPoint(e.clientX, e.clientY).matrixTransform(svg.getScreenCTM().inverse());
const zoom = (fattore, x, y) => {
  fattore = Math.min(Math.max(fattore, intero[2] / 5000 / vista[2]), 4 * intero[2] / vista[2]);
  vista = [x - (x - vista[0]) * fattore, y - (y - vista[1]) * fattore,
    vista[2] * fattore, vista[3] * fattore];
  mostra();
};
svg.addEventListener('wheel', e => {
  e.preventDefault();
  const p = luogo(e);
  zoom(1.2 ** Math.sign(e.deltaY), p.x, p.y);
}, {passive: false});
svg.addEventListener('pointerdown', e => {
  if (e.pointerType === 'touch' || e.button) return;
  presa = luogo(e);
  svg.setPointerCapture(e.pointerId);
});
svg.addEventListener('pointermove', e => {
  if (!presa) return;
  const p = luogo(e);
  vista[0] += presa.x - p.x;
  vista[1] += presa.y - p.y;
  mostra();
});
for (const fine of ['pointerup', 'pointercancel']) svg.addEventListener(fine, () => presa = null);
const torna = () => { vista = [...intero]; mostra(); };
for (const b of document.querySelectorAll('[data-zoom]')) b.addEventListener('click', () => {
  const fattore = +b.dataset.zoom;
  fattore ? zoom(fattore, vista[0] + vista[2] / 2, vista[1] + vista[3] / 2) : torna();
});
addEventListener('beforeprint', torna);
})();
)js";

}  // namespace compensa
