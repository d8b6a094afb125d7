#!/usr/bin/env node
// Generates a suite in the samples' JSON form whose global functions are a
// real library (lodash): SCRIPTS scripts with CASES cases each, every script
// calling the library. Expected values come from Node's own engine, so every
// case passes on a correct engine.
// Usage: gen_library_suite.js LIBRARY.js OUTDIR [SCRIPTS] [CASES]
'use strict';
const fs = require('fs');
const path = require('path');
const vm = require('vm');

const [library, outDir] = process.argv.slice(2, 4);
const [scripts = 2, cases = 20] = process.argv.slice(4).map(Number);
if (!library || !outDir) {
  console.error('usage: gen_library_suite.js LIBRARY.js OUTDIR [SCRIPTS] [CASES]');
  process.exit(2);
}

const bodies = [
  ['var bars = _.map(_.range(n), function (i) { return { d: 8 + 2 * (i % 6), len: x + i * 10 }; });',
   'var total = _.sumBy(bars, "len");',
   'var heaviest = _.maxBy(bars, function (b) { return b.d * b.d * b.len; }).d;',
   'var groups = _.keys(_.groupBy(bars, "d")).join(",");'],
  ['var chunks = _.chunk(_.range(x, x + n), 3);',
   'var total = _.sum(_.map(chunks, function (c) { return _.last(c); }));',
   'var label = _.camelCase("rebar group " + n) + "-" + _.padStart(String(x), 6, "0");',
   'var uniq = _.uniq(_.map(_.range(n), function (i) { return (i * x) % 7; })).length;'],
];
const outputs = [['total', 'heaviest', 'groups'], ['total', 'label', 'uniq']];

const libText = fs.readFileSync(library, 'utf8').replace(/\r\n/g, '\n').replace(/\n/g, '\r\n');
const compiled = new vm.Script(libText);
const suite = {};
for (let s = 0; s < scripts; s++) {
  const kind = s % bodies.length;
  const script = [`// library script ${s}`, ...bodies[kind]].join('\r\n');
  const globalParm = ['var x = 100 ////x', 'var n = 12 ////n'].join('\r\n');
  const caseList = [];
  for (let c = 0; c < cases; c++) {
    const text = `x = ${50 + ((s * 37 + c * 11) % 400)}; n = ${5 + ((s + c * 3) % 20)};`;
    const context = vm.createContext({});
    compiled.runInContext(context);
    vm.runInContext(globalParm + '\r\n' + text + '\r\n' + script, context);
    const expect = outputs[kind].map((o) => [o, String(vm.runInContext(o, context)), o]);
    caseList.push({ name: `case${String(c).padStart(4, '0')}`, script: text, expect });
  }
  const id = `L${String(s).padStart(3, '0')}`;
  suite[id] = {
    key_ch: `通用脚本\\库脚本${String(s).padStart(3, '0')}.js`, key_en: `Library${s}`,
    description: `library script ${s}`, category: '通用', globalParm, script, cases: caseList,
  };
}
fs.mkdirSync(outDir, { recursive: true });
fs.writeFileSync(path.join(outDir, 'suite.json'), JSON.stringify(suite, null, 1) + '\n');
fs.copyFileSync(library, path.join(outDir, 'GlobalFun.js'));
console.log(`${scripts} scripts x ${cases} cases over ${path.basename(library)} -> ${outDir}`);
