#!/usr/bin/env python3
# Regenerates testing/samples/samples.json from sample_defs.py. Expected values
# are what an independent engine (Node.js) computes for each case, so the
# sample cases pass on a correct engine; review them before committing.
import json, os, subprocess, sys
here = os.path.dirname(os.path.abspath(__file__))
samples = os.path.join(here, '..', '..', 'testing', 'samples')
sys.path.insert(0, here)
from sample_defs import S
gf = open(os.path.join(samples, 'GlobalFun.js'), encoding='utf8').read().replace('\n', '\r\n')
out = {}
for (name, kch, ken, desc, cat, gp, script, cases) in S:
    gparm = "\r\n".join("var %s = %s ////%s" % p for p in gp)
    cs = []
    for (cname, ctext, outs) in cases:
        prog = gf + "\r\n" + gparm + "\r\n" + ctext + "\r\n" + script
        js = prog + "\n;JSON.stringify([" + ",".join("String(%s)" % o for o, _ in outs) + "])"
        vals = json.loads(subprocess.check_output(['node', '-e', 'console.log(eval(require("fs").readFileSync(0,"utf8")))'], input=js.encode()).decode())
        cs.append({"name": cname, "script": ctext, "expect": [[o, v, m] for (o, m), v in zip(outs, vals)]})
    out[name] = dict(key_ch=kch, key_en=ken, description=desc, category=cat, globalParm=gparm, script=script, cases=cs)
with open(os.path.join(samples, 'samples.json'), 'w', encoding='utf8') as f:
    json.dump(out, f, ensure_ascii=False, indent=1)
    f.write('\n')
