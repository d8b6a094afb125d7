#pragma once
#include <QDialog>

class QComboBox;
class QLineEdit;

// "宏设置": name, type and description of a macro before its first database
// insert. OK is refused while the name is empty.
class CDlgMacro : public QDialog
{
    Q_OBJECT
public:
    explicit CDlgMacro(QWidget* parent = nullptr);

    int m_nType = 0;
    QString m_strDescription;
    QString m_strName;

public slots:
    void accept() override;

private:
    QComboBox* m_typeCombo;
    QLineEdit* m_descriptionEdit;
    QLineEdit* m_nameEdit;
};
