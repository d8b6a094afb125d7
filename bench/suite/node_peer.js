#!/usr/bin/env node
// The Node.js peer of velmora-test: runs the same texts the same way (global
// functions, global parameters, case text and script joined with CR LF, a
// fresh context per case, every output read back as text and compared with
// the expected value). Usage: node_peer.js SUITE.json GlobalFun.js
// With --compile-once the global functions are compiled once per run and
// run in each case's fresh context before the rest of the joined text.
// Prints one line: cases, passed, failed, seconds, cases per second.
'use strict';
const fs = require('fs');
const vm = require('vm');

const suite = JSON.parse(fs.readFileSync(process.argv[2], 'utf8'));
const gf = fs.readFileSync(process.argv[3], 'utf8').replace(/\r\n/g, '\n').replace(/\n/g, '\r\n');
const compileOnce = process.argv.includes('--compile-once');
let passed = 0, failed = 0;
const start = process.hrtime.bigint();
const library = compileOnce ? new vm.Script(gf) : null;
for (const id of Object.keys(suite)) {
  const s = suite[id];
  for (const c of s.cases) {
    const rest = s.globalParm + '\r\n' + c.script + '\r\n' + s.script;
    const context = vm.createContext({});
    let ok = true;
    try {
      if (library) {
        library.runInContext(context);
        vm.runInContext(rest, context);
      } else {
        vm.runInContext(gf + '\r\n' + rest, context);
      }
      for (const [name, expected] of c.expect) {
        let value;
        try {
          // Read back by evaluating the name, as the engine's runner does.
          const v = vm.runInContext(name, context);
          value = v === undefined ? '参数不存在!' : String(v);
        } catch (e) {
          value = '参数不存在!';
        }
        if (value !== expected) ok = false;
      }
    } catch (e) {
      ok = false;
    }
    if (ok) passed++; else failed++;
  }
}
const seconds = Number(process.hrtime.bigint() - start) / 1e9;
const total = passed + failed;
console.log(`node-peer cases=${total} passed=${passed} failed=${failed} seconds=${seconds.toFixed(3)} cases_per_s=${(total / seconds).toFixed(1)}`);
