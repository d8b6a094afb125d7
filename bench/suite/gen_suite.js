#!/usr/bin/env node
// Generates a regression suite in the samples' JSON form: SCRIPTS scripts with
// CASES cases each, sharing a GlobalFun text of LINES lines. Expected values
// are computed here with Node's own engine so that every case passes on a
// correct engine. Usage: gen_suite.js OUTDIR [SCRIPTS] [CASES] [LINES]
'use strict';
const fs = require('fs');
const path = require('path');
const vm = require('vm');

const [outDir, scripts = 50, cases = 20, lines = 2000] = [process.argv[2], ...process.argv.slice(3).map(Number)];
if (!outDir) {
  console.error('usage: gen_suite.js OUTDIR [SCRIPTS] [CASES] [LINES]');
  process.exit(2);
}

// Five lines per function, so LINES lines hold LINES / 5 of them.
function makeGlobalFun(lineCount) {
  const out = ['// generated global functions'];
  const count = Math.max(1, Math.floor((lineCount - 1) / 5));
  for (let i = 0; i < count; i++) {
    const k = (1 + (i % 17) / 10).toFixed(1);
    out.push(`function Fn_${i}(a, b) {`);
    out.push(`    var t = a * ${k} + b * ${(i % 7) + 1};`);
    out.push(`    if (t > ${1000 + i}) { t = t / ${(i % 3) + 2}; }`);
    out.push('    return Math.round(t * 100) / 100;');
    out.push('}');
  }
  while (out.length < lineCount) out.push('// padding');
  return { text: out.join('\n') + '\n', count };
}

function makeScript(s, fnCount) {
  const f1 = (s * 7) % fnCount, f2 = (s * 13 + 5) % fnCount;
  const script = [
    `// generated script ${s}`,
    `var r1 = Fn_${f1}(x, y);`,
    `var r2 = Fn_${f2}(r1, z);`,
    'var total = Math.round((r1 + r2 * n) * 100) / 100;',
    'var label = total > 500 ? "large" : "small";',
  ].join('\r\n');
  const globalParm = ['var x = 10 ////x', 'var y = 20 ////y', 'var z = 3 ////z', 'var n = 2 ////n'].join('\r\n');
  return { script, globalParm, outputs: ['r1', 'r2', 'total', 'label'] };
}

function expectedValues(context, caseText, def) {
  vm.runInContext(caseText + '\r\n' + def.script, context);
  return def.outputs.map((o) => [o, String(vm.runInContext(o, context)), o]);
}

const gf = makeGlobalFun(lines);
const gfCrLf = gf.text.replace(/\n/g, '\r\n');
const suite = {};
for (let s = 0; s < scripts; s++) {
  const def = makeScript(s, gf.count);
  // The inputs are all set by every case, so one context per script gives
  // the same values as a fresh one per case.
  const context = vm.createContext({});
  vm.runInContext(gfCrLf + '\r\n' + def.globalParm, context);
  const caseList = [];
  for (let c = 0; c < cases; c++) {
    const text = `x = ${(s * 31 + c * 7) % 400}; y = ${(c * 11) % 90}; z = ${1 + (c % 9)}; n = ${1 + ((s + c) % 5)};`;
    caseList.push({ name: `case${String(c).padStart(4, '0')}`, script: text, expect: expectedValues(context, text, def) });
  }
  const id = `S${String(s).padStart(3, '0')}`;
  const folder = s % 2 === 0 ? '通用脚本' : '梁';
  suite[id] = {
    key_ch: `${folder}\\生成脚本${String(s).padStart(3, '0')}.js`, key_en: `Generated${s}`,
    description: `generated script ${s}`, category: folder === '梁' ? '梁' : '通用',
    globalParm: def.globalParm, script: def.script, cases: caseList,
  };
}
fs.mkdirSync(outDir, { recursive: true });
fs.writeFileSync(path.join(outDir, 'suite.json'), JSON.stringify(suite, null, 1) + '\n');
fs.writeFileSync(path.join(outDir, 'GlobalFun.js'), gf.text);
console.log(`${scripts} scripts x ${cases} cases, GlobalFun ${gf.text.split('\n').length - 1} lines -> ${outDir}`);
