#pragma once
#include <QList>
#include <QString>

// Where a line of a case's joined text lies within its pieces (global
// functions, global parameters, case text, script), so that an engine error
// "in line N" of the whole can also be told as a line of the piece a user
// edits. Pieces are joined with CR LF; lines break as JavaScript breaks them.
class CJoinedTextLines
{
public:
    // Pieces in the order they are joined.
    void Add(const QString& label, const QString& text);
    // "script line 2" for line N of the whole; empty when N lies in no piece.
    QString Locate(int line) const;
    // The N of an error text ending in "; in line N", else 0.
    static int ErrorLine(const QString& error);

private:
    struct Piece
    {
        QString label;
        int firstLine = 1;
        int lines = 1;
    };
    static int CountLines(const QString& text);

    QList<Piece> m_pieces;
    int m_nextLine = 1;
};
