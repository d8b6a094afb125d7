#pragma once
#include <QString>
#include <QVariant>

#include <js/RootingAPI.h>
#include <js/TypeDecls.h>
#include <js/Value.h>

// Moving text and values between Qt and the engine. Values that come back to
// the host are text made by JavaScript's own String(), so every part of the
// system shows a number, a boolean or an object the same way; undefined is
// the empty variant ("no value").
class CJsText
{
public:
    static JSString* ToJsString(JSContext* cx, const QString& text);
    static bool ToQString(JSContext* cx, JSString* str, QString& text);

    // String(value) as text; false (with an exception pending) if the value's
    // own conversion throws.
    static bool ValueToText(JSContext* cx, JS::HandleValue value, QString& text);
    // The empty variant for undefined, String(value) otherwise.
    static bool ValueToVariant(JSContext* cx, JS::HandleValue value, QVariant& result);
    // Strings stay strings, numbers and booleans become theirs, the empty
    // variant becomes undefined, anything else its text.
    static bool VariantToValue(JSContext* cx, const QVariant& value, JS::MutableHandleValue out);

    static bool IsIdentifier(const QString& text);

    // Line `line` (1-based) of `text`, split at JavaScript's line terminators
    // (CR LF counting as one); empty when there is no such line.
    static QString LineOf(const QString& text, int line);
    // How many line terminators the text holds (CR LF counting as one).
    static int LineBreaks(const QString& text);
};
