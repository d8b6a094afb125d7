#include "CJsText.h"

#include <js/Conversions.h>
#include <js/String.h>
#include <js/Symbol.h>
#include <jsapi.h>

namespace
{
const char16_t* Utf16(const QString& text)
{
    return reinterpret_cast<const char16_t*>(text.utf16());
}

bool SymbolToText(JSContext* cx, JS::HandleValue value, QString& text)
{
    JS::RootedSymbol symbol(cx, value.toSymbol());
    JSString* description = JS::GetSymbolDescription(symbol);
    QString inner;
    if (description && !CJsText::ToQString(cx, description, inner))
        return false;
    text = QStringLiteral("Symbol(") + inner + QLatin1Char(')');
    return true;
}

bool IsLineBreak(QChar c)
{
    return c == QChar(u'\n') || c == QChar(u'\r') || c == QChar(0x2028) || c == QChar(0x2029);
}
} // namespace

JSString* CJsText::ToJsString(JSContext* cx, const QString& text)
{
    return JS_NewUCStringCopyN(cx, Utf16(text), static_cast<std::size_t>(text.size()));
}

bool CJsText::ToQString(JSContext* cx, JSString* str, QString& text)
{
    const std::size_t length = JS_GetStringLength(str);
    QString result(static_cast<qsizetype>(length), Qt::Uninitialized);
    auto* chars = reinterpret_cast<char16_t*>(result.data());
    if (!JS_CopyStringChars(cx, mozilla::Range<char16_t>(chars, length), str))
        return false;
    text = std::move(result);
    return true;
}

// GCC 12 mistakes the engine's stack-root registration for a dangling pointer.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdangling-pointer"
bool CJsText::ValueToText(JSContext* cx, JS::HandleValue value, QString& text)
{
    if (value.isString())
        return ToQString(cx, value.toString(), text);
    if (value.isSymbol())
        return SymbolToText(cx, value, text);
    JS::RootedString str(cx, JS::ToString(cx, value));
    return str && ToQString(cx, str, text);
}
#pragma GCC diagnostic pop

bool CJsText::ValueToVariant(JSContext* cx, JS::HandleValue value, QVariant& result)
{
    if (value.isUndefined())
    {
        result = QVariant();
        return true;
    }
    QString text;
    if (!ValueToText(cx, value, text))
        return false;
    result = text;
    return true;
}

bool CJsText::VariantToValue(JSContext* cx, const QVariant& value, JS::MutableHandleValue out)
{
    switch (value.typeId())
    {
    case QMetaType::UnknownType:
        out.setUndefined();
        return true;
    case QMetaType::Bool:
        out.setBoolean(value.toBool());
        return true;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        out.setNumber(value.toDouble());
        return true;
    default:
        break;
    }
    JSString* str = ToJsString(cx, value.toString());
    if (!str)
        return false;
    out.setString(str);
    return true;
}

bool CJsText::IsIdentifier(const QString& text)
{
    return !text.isEmpty() && JS_IsIdentifier(Utf16(text), static_cast<std::size_t>(text.size()));
}

QString CJsText::LineOf(const QString& text, int line)
{
    if (line < 1)
        return QString();
    qsizetype start = 0;
    for (int current = 1; current < line; ++current)
    {
        while (start < text.size() && !IsLineBreak(text[start]))
            ++start;
        if (start >= text.size())
            return QString();
        if (text[start] == QChar(u'\r') && start + 1 < text.size() && text[start + 1] == QChar(u'\n'))
            ++start;
        ++start;
    }
    qsizetype end = start;
    while (end < text.size() && !IsLineBreak(text[end]))
        ++end;
    return text.mid(start, end - start);
}

int CJsText::LineBreaks(const QString& text)
{
    int breaks = 0;
    for (qsizetype i = 0; i < text.size(); ++i)
    {
        if (!IsLineBreak(text[i]))
            continue;
        ++breaks;
        if (text[i] == QChar(u'\r') && i + 1 < text.size() && text[i + 1] == QChar(u'\n'))
            ++i;
    }
    return breaks;
}
