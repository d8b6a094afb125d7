// 钢筋计算公用函数
function RoundTo(x, n) { var k = Math.pow(10, n); return Math.round(x * k) / k; }
function CeilTo(x, step) { return Math.ceil(x / step) * step; }
function BarWeightPerMeter(d) { return 0.00617 * d * d; }
function BarCount(span, spacing) { return Math.ceil(span / spacing) + 1; }
