#pragma once
#include <QString>
#include <QStringList>

// A plain-text table for log files: column titles, then cell values row by
// row; printed with borders and columns padded to their widest cell. Widths
// are display columns: CJK and other East Asian wide characters count two,
// so Chinese text stays aligned in an editor with a fixed-width font.
//
//   +----------+-----------+--------------+
//   | ParmName | ParmValue | NewParmValue |
//   +----------+-----------+--------------+
//   | 钢筋     | 3         | 3.0          |
//   +----------+-----------+--------------+
//
// Lines end with CR LF. Control characters in a title or value (line breaks,
// tabs) print as one blank each, as they would break the grid.
class COutPutTextTable
{
public:
    // Adds a column with this title.
    void AddTextNode(const QString& title);
    // Fills the next cell: left to right, then on to the next row.
    void AddNodeValue(const QString& value);
    void Clear();

    int GetColumnCount() const { return int(m_titles.size()); }
    // Rows begun by AddNodeValue; a last row may be partly filled.
    int GetRowCount() const;

    // The table text; empty when there are no columns.
    QString ToText() const;
    // Appends the table to the file (8-bit code page), creating the file when
    // missing. False when it cannot be written.
    bool Print2File(const QString& path) const;

    // Display width of a text: two per East Asian wide character, one per
    // other character (a surrogate pair is one character).
    static int DisplayWidth(const QString& text);

private:
    QString Cell(int row, int column) const;
    QString Line(const QStringList& cells, const QList<int>& widths) const;

    QStringList m_titles;
    QStringList m_values;
};
