// 资源脚本
var 单位 = '平方米';
function 面积(a, b) {
  return a * b;
}
