#pragma once
#include <QDialog>

class QLineEdit;

// "导入脚本参数文件": chooses a settings file to import.
class CDlgLoad : public QDialog
{
    Q_OBJECT
public:
    explicit CDlgLoad(QWidget* parent = nullptr);

    QString m_strFileName;

public slots:
    void accept() override;
    void OnBrowse();

private:
    QLineEdit* m_fileEdit;
};
