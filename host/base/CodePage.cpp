#include "CodePage.h"

#include "HostContext.h"

#include <cerrno>
#include <iconv.h>
#include <algorithm>
#include <map>
#include <memory>
#include <string>

namespace {

// iconv descriptors are not thread-safe; each thread keeps its own, opened once.
class Converter
{
public:
    Converter(const char* to, const char* from) : m_cd(iconv_open(to, from)) {}
    ~Converter()
    {
        if (Valid())
            iconv_close(m_cd);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool Valid() const { return m_cd != reinterpret_cast<iconv_t>(-1); }

    // Converts in steps of `unit` input bytes; an input unit that cannot be
    // converted is replaced by `replacement` and skipped.
    std::string Run(const char* in, size_t inLeft, size_t unit, const std::string& replacement) const
    {
        iconv(m_cd, nullptr, nullptr, nullptr, nullptr);
        std::string out;
        out.resize(inLeft * 2 + 16);
        char* inPtr = const_cast<char*>(in);
        size_t done = 0;
        while (inLeft > 0) {
            char* outPtr = out.data() + done;
            size_t outLeft = out.size() - done;
            const size_t rc = iconv(m_cd, &inPtr, &inLeft, &outPtr, &outLeft);
            done = out.size() - outLeft;
            if (rc != static_cast<size_t>(-1))
                break;
            if (errno == E2BIG) {
                out.resize(out.size() * 2);
                continue;
            }
            // EILSEQ or EINVAL: replace one unit and carry on.
            out.resize(std::max(out.size(), done + replacement.size() + 16));
            out.replace(done, replacement.size(), replacement);
            done += replacement.size();
            const size_t skip = std::min(unit, inLeft);
            inPtr += skip;
            inLeft -= skip;
            iconv(m_cd, nullptr, nullptr, nullptr, nullptr);
        }
        out.resize(done);
        return out;
    }

private:
    iconv_t m_cd;
};

const Converter& ConverterFor(const QByteArray& to, const QByteArray& from)
{
    thread_local std::map<std::string, std::unique_ptr<Converter>> cache;
    const std::string key = to.toStdString() + '<' + from.toStdString();
    auto& slot = cache[key];
    if (!slot)
        slot = std::make_unique<Converter>(to.constData(), from.constData());
    return *slot;
}

// Code pages whose bytes below 0x80 are ASCII, so that a text of those bytes
// only needs no converter (Shift_JIS, for one, is not among them: 0x5C is ¥).
bool KeepsAscii(const QByteArray& codePage)
{
    static const QList<QByteArray> kPages = {"GBK", "GB2312", "GB18030", "CP936", "UTF-8", "BIG5", "CP950"};
    for (const QByteArray& page : kPages)
    {
        if (codePage.compare(page, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

bool IsAscii(const QByteArray& bytes)
{
    for (const char c : bytes)
    {
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    }
    return true;
}
} // namespace

QString CodePage::ToUnicode(const QByteArray& bytes)
{
    return ToUnicode(bytes, HostContext::Instance().CodePage());
}

QByteArray CodePage::FromUnicode(const QString& text)
{
    return FromUnicode(text, HostContext::Instance().CodePage());
}

QString CodePage::ToUnicode(const QByteArray& bytes, const QByteArray& codePage)
{
    if (bytes.isEmpty())
        return {};
    // Libraries and case files are mostly ASCII: no converter needed then.
    if (KeepsAscii(codePage) && IsAscii(bytes))
        return QString::fromLatin1(bytes);
    const Converter& conv = ConverterFor("UTF-16LE", codePage);
    if (!conv.Valid())
        return QString::fromLatin1(bytes);
    static const std::string question("?\0", 2);
    const std::string utf16 = conv.Run(bytes.constData(), size_t(bytes.size()), 1, question);
    return QString(reinterpret_cast<const QChar*>(utf16.data()), qsizetype(utf16.size() / 2));
}

QByteArray CodePage::FromUnicode(const QString& text, const QByteArray& codePage)
{
    if (text.isEmpty())
        return {};
    const Converter& conv = ConverterFor(codePage, "UTF-32LE");
    const QList<uint> ucs4 = text.toUcs4();
    if (!conv.Valid())
        return text.toLatin1();
    const std::string out = conv.Run(reinterpret_cast<const char*>(ucs4.constData()),
                                     size_t(ucs4.size()) * 4, 4, "?");
    return QByteArray(out.data(), qsizetype(out.size()));
}
