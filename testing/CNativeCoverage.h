#pragma once
#include <QList>
#include <QString>

#include <map>

// Line coverage gathered over test case runs. A case runs as one joined text
// (global functions, global parameters, case text, script); the engine counts
// lines of that text, and each count is carried back to the line of the
// script or of its global function library ("GlobalFun.txt") it came from.
// Case text and global parameters are inputs, not code under test, and are
// left out. Scripts whose libraries hold the same text share one library
// record (kept with the first such script), as they share its code. Written
// as LCOV (one record per script and per library) with a copy of each source
// beside it, so genhtml can show the lines.
class CNativeCoverage
{
public:
    using LineHits = std::map<int, qint64>;

    struct File
    {
        QString script;   // the script (test-case store name) it belongs to, for a
                          // library the first script that uses it
        QString fileName; // the script's own file name, or "GlobalFun.txt"
        QString source;
        LineHits hits;    // instrumented lines only; 0 = never reached
    };

    // One case run: the four pieces as they were joined with "\r\n", and the
    // counts of the joined text's lines.
    void AddRun(const QString& script, const QString& globalFun, const QString& globalParm,
                const QString& caseText, const QString& scriptText, const LineHits& joinedHits);
    void Merge(const CNativeCoverage& other);

    // Files in the order they were first reached.
    const QList<File>& Files() const { return m_files; }
    const File* Find(const QString& script, const QString& fileName) const;
    // The library record whose text is `source`.
    const File* FindLibrary(const QString& source) const;

    // `dir`/lcov.info and the sources under `dir`/source; false with a reason
    // when something cannot be written.
    bool WriteLcov(const QString& dir, QString& error) const;
    // `dir`/html from `dir`/lcov.info with genhtml; false with a reason when
    // genhtml is missing or fails.
    static bool WriteHtml(const QString& dir, QString& error);
    static bool HasGenhtml();

    // "钢筋每米重量.js" for "通用脚本\钢筋每米重量.js".
    static QString ScriptFileName(const QString& script);

    static inline const QString kLcovFile = QStringLiteral("lcov.info");

private:
    File& FileFor(const QString& script, const QString& fileName, const QString& source);
    File& LibraryFor(const QString& script, const QString& source);
    File& Add(const File& file);
    static void AddHits(File& file, const LineHits& joinedHits, int firstLine, int lineCount);

    QList<File> m_files;
};
