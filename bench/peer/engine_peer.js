'use strict';
// The Node.js peer of the engine benchmarks. It runs the very texts the C++
// benchmark wrote (complete macro texts as the macro runner assembles them)
// with a fresh vm context per run, reads the same outputs with String(), and
// prints mean times; given our benchmark's JSON it prints ours/Node per case,
// by wall time and by CPU time (the machine may be busy with other work).
// The loop case (c) is left out: in a vm context every global access goes
// through the context's interceptors, so Node needs seconds for it.
//
//   node engine_peer.js <texts-folder> [--ours=<google-benchmark.json>]

const fs = require('fs');
const path = require('path');
const vm = require('vm');

const CASES = [
  { name: 'macro', label: '(a) reset + 6-line macro + 3 outputs', bench: 'BM_ResetMacroThreeOutputs', runs: 5000 },
  { name: 'library', label: '(b) reset + 3,000-line library + 2 outputs', bench: 'BM_ResetLibraryScriptTwoOutputs', runs: 500 },
  {
    name: 'library',
    label: '(b) the same, text changing each run',
    bench: 'BM_ResetLibraryScriptTwoOutputsParsedAfresh',
    runs: 500,
    vary: true,
  },
];

function readCase(folder, name) {
  const read = (ext) => fs.readFileSync(path.join(folder, name + ext), 'utf8');
  const lines = (text) => (text.length ? text.split('\n') : []);
  return { text: read('.js'), outputs: lines(read('.outputs')), expected: lines(read('.expected')) };
}

// A varying case changes the first input's value every run (as the C++
// benchmark does), so no compiled form of an earlier run can be reused.
let runNumber = 0;
function textOf(c) {
  if (!c.vary) return c.text;
  return c.text.replace(/^var L = \d+;/, `var L = ${1200 + runNumber++};`);
}

function runOnce(c) {
  const context = vm.createContext({});
  vm.runInContext(textOf(c), context);
  return c.outputs.map((name) => {
    const value = vm.runInContext(name.trim(), context);
    return value === undefined ? '参数不存在!' : String(value);
  });
}

function measure(c, runs) {
  const warmUp = Math.max(2, Math.floor(runs / 10));
  for (let i = 0; i < warmUp; i++) runOnce(c);
  const cpuStart = process.cpuUsage();
  const start = process.hrtime.bigint();
  for (let i = 0; i < runs; i++) runOnce(c);
  const wall = Number(process.hrtime.bigint() - start) / runs;
  const cpu = process.cpuUsage(cpuStart);
  return { wall, cpu: ((cpu.user + cpu.system) * 1e3) / runs };
}

function oursNs(file) {
  const ns = {};
  if (!file) return ns;
  const scale = { ns: 1, us: 1e3, ms: 1e6, s: 1e9 };
  for (const b of JSON.parse(fs.readFileSync(file, 'utf8')).benchmarks) {
    ns[b.name] = { wall: b.real_time * scale[b.time_unit], cpu: b.cpu_time * scale[b.time_unit] };
  }
  return ns;
}

function format(ns) {
  if (ns === undefined) return '-';
  return ns >= 1e6 ? (ns / 1e6).toFixed(2) + ' ms' : (ns / 1e3).toFixed(1) + ' us';
}

function main() {
  const args = process.argv.slice(2);
  const folder = args.find((a) => !a.startsWith('--'));
  const oursArg = args.find((a) => a.startsWith('--ours='));
  if (!folder) {
    console.error('usage: node engine_peer.js <texts-folder> [--ours=<benchmark.json>]');
    process.exit(2);
  }
  const ours = oursNs(oursArg && oursArg.slice('--ours='.length));
  let mismatch = false;
  const columns = ['ours wall', 'node wall', 'ratio', 'ours cpu', 'node cpu', 'ratio'];
  console.log(['case (ratio: ours / node)'.padEnd(46), ...columns.map((h) => h.padStart(10))].join(' '));
  for (const spec of CASES) {
    const c = { ...readCase(folder, spec.name), vary: spec.vary };
    const values = runOnce({ ...c, vary: false });
    if (values.join('\n') !== c.expected.join('\n')) {
      mismatch = true;
      console.error(`${spec.name}: node gives [${values}] where ours gives [${c.expected}]`);
    }
    const node = measure(c, spec.runs);
    const mine = ours[spec.bench] || {};
    const ratio = (a, b) => (a === undefined ? '-' : (a / b).toFixed(2));
    const cells = [format(mine.wall), format(node.wall), ratio(mine.wall, node.wall),
      format(mine.cpu), format(node.cpu), ratio(mine.cpu, node.cpu)];
    console.log([spec.label.padEnd(46), ...cells.map((x) => x.padStart(10))].join(' '));
  }
  process.exit(mismatch ? 1 : 0);
}

main();
