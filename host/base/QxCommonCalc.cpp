#include "QxCommonCalc.h"

#include <limits>
#include <numbers>
#include <muParser.h>

namespace qxcommon {

namespace {

mu::Parser& ThreadParser()
{
    thread_local mu::Parser parser = [] {
        mu::Parser p;
        p.DefineConst("PI", std::numbers::pi);
        return p;
    }();
    return parser;
}

double Fail(QString* error, const QString& message)
{
    if (error)
        *error = message;
    return std::numeric_limits<double>::quiet_NaN();
}

} // namespace

double Calc(const QString& expression, QString* error)
{
    for (QChar c : expression) {
        if (c.unicode() > 127 || c.unicode() == 0)
            return Fail(error, QStringLiteral("Unexpected character \"%1\" in the expression").arg(c));
    }
    try {
        mu::Parser& parser = ThreadParser();
        parser.SetExpr(expression.toStdString());
        const double value = parser.Eval();
        // "1,2" is a list of results to muParser; a calculator wants one.
        if (parser.GetNumResults() != 1)
            return Fail(error, QStringLiteral("The expression gives %1 results instead of one").arg(parser.GetNumResults()));
        if (error)
            error->clear();
        return value;
    } catch (const mu::Parser::exception_type& e) {
        return Fail(error, QString::fromStdString(e.GetMsg()));
    } catch (const std::exception& e) {
        return Fail(error, QString::fromLocal8Bit(e.what()));
    } catch (...) {
        return Fail(error, QStringLiteral("Unknown calculator failure"));
    }
}

} // namespace qxcommon
