#pragma once
#include <QDialog>

class CGridCtrlForDataSet;
class QLineEdit;

// Dialog 1016: the script chooser. Lists every script of the system data;
// ends with OK and the chosen script's name, or with an empty name for
// "all scripts".
class CDialog_JaveList : public QDialog
{
    Q_OBJECT
public:
    static inline const QString kChooseFirst = QStringLiteral("请先选择要测试的脚本!");
    static inline const QString kNotFound = QStringLiteral("没有找到!");

    explicit CDialog_JaveList(QWidget* parent = nullptr);

    // Empty after "测试所有脚本".
    QString GetChosenName() const { return m_chosen; }

    void OnTestCurrent();
    void OnTestAll();
    void OnSearch();

private:
    CGridCtrlForDataSet* m_grid;
    QLineEdit* m_search;
    QString m_chosen;
};
