#pragma once
// First: the engine's headers must come before Qt's keywords.
#include "CJsDeclarationScanner.h"
#include "CJsLazyLibrary.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <js/RootingAPI.h>
#include <js/TypeDecls.h>

#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <vector>

class CJsRuntime;

// How a text made of pieces joined with "\r\n" runs piece by piece: each
// non-empty piece with the line it starts at in the whole, and a prelude
// declaring the variables that a later piece declares and an earlier one
// may mention (in the whole they exist from the start).
struct CJsSplitPlan
{
    struct Piece
    {
        QString text;
        int line = 1;
        bool declaredOnDemand = false; // the library's piece: not run, attached
    };
    std::vector<Piece> pieces;
    QString prelude;
    std::shared_ptr<const CJsLazyLibrary> library;
};

// Decides whether running the pieces of a joined text one after another in
// one global gives what the whole gives. The whole hoists every piece's
// declarations to its start; the pieces do so each at its own start. Where
// that could show (a later piece declares a function or a let/const/class
// that an earlier piece mentions, a function declared in a block, a piece
// whose head or tail reads differently when joined, a piece that does not
// parse on its own) the answer is no. The engine's own parser tells the
// top-level declarations; what it finds is kept per text, so a large piece
// seen again costs a lookup.
//
// One analyzer per thread's runtime; call with the context in a realm of
// that runtime.
class CJsPieceAnalyzer
{
public:
    explicit CJsPieceAnalyzer(CJsRuntime& runtime) : m_runtime(runtime) {}
    ~CJsPieceAnalyzer();

    // With `file`, the largest piece of function declarations only becomes a
    // library its global declares on demand, compiled under that file name.
    bool Plan(const QStringList& pieces, CJsSplitPlan& plan, const std::string& file = std::string());
    // Drops the engine objects; the runtime calls it before its context goes.
    void Release();

    // Bounds of what is kept: texts, and their characters in all.
    static constexpr std::size_t kCapacity = 64;
    static constexpr qsizetype kMaxChars = 16 * 1024 * 1024;
    // Smaller pieces are declared as they are: there is little to save.
    static constexpr qsizetype kMinLibraryChars = 512;

    CJsPieceAnalyzer(const CJsPieceAnalyzer&) = delete;
    CJsPieceAnalyzer& operator=(const CJsPieceAnalyzer&) = delete;

private:
    struct Info
    {
        QString text;
        QSet<QString> words;
        int lineBreaks = 0;
        bool startsWithString = false;
        bool startsAmbiguously = false;
        bool mayEndWithLet = false;
        bool declarationsRead = false;
        bool parsed = false;
        bool unsure = false; // declarations the walk does not follow
        QStringList vars, functions, lexicals;
        // The piece as a library, made when first asked for at this line.
        mutable bool outlined = false;
        mutable std::vector<CJsLazyLibrary::Function> declarations; // lines within the piece
        mutable std::shared_ptr<const CJsLazyLibrary> library;
        mutable int libraryLine = 0;
    };

    static bool MentionedBefore(const QString& name, const std::vector<std::shared_ptr<const Info>>& infos,
                                std::size_t before);
    std::shared_ptr<const Info> InfoFor(const QString& text, bool declarations);
    void ReadDeclarations(Info& info);
    void ChooseLibrary(const std::vector<std::shared_ptr<const Info>>& infos, CJsSplitPlan& plan,
                       const std::string& file);
    std::shared_ptr<const CJsLazyLibrary> LibraryOf(const Info& info, int line, const std::string& file);
    void Outline(const Info& info);
    bool DeclaresExactly(const QString& skeleton, const std::vector<CJsDeclarationScanner::Declaration>& cut);
    bool MakeWalkers();
    bool Parse(const QString& text, QString& result);

    CJsRuntime& m_runtime;
    std::list<std::shared_ptr<Info>> m_infos; // most recently used first
    qsizetype m_chars = 0;
    std::unique_ptr<JS::PersistentRooted<JSObject*>> m_walker;
};
