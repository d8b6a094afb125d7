#pragma once
#include <QByteArray>
#include <QString>

// 8-bit text of the host's code page (GBK unless the host context says
// otherwise), converted through iconv. Nothing is lost silently in one
// direction only: a character the code page cannot hold becomes "?" on the way
// out, and a byte sequence that is not valid in it becomes "?" on the way in;
// the rest of the text always survives.
class CodePage
{
public:
    static QString ToUnicode(const QByteArray& bytes);
    static QByteArray FromUnicode(const QString& text);

    static QString ToUnicode(const QByteArray& bytes, const QByteArray& codePage);
    static QByteArray FromUnicode(const QString& text, const QByteArray& codePage);
};
