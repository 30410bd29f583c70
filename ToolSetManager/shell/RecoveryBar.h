#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

/// The strip above the document windows that offers what an earlier run of the program could not
/// save. It takes no focus and stays until it is answered.
class RecoveryBar : public QWidget
{
    Q_OBJECT
public:
    /// \a titles are the names of the documents, at least one.
    explicit RecoveryBar(const QStringList &titles, QWidget *parent = nullptr);

    QString text() const { return m_text; }

Q_SIGNALS:
    void recover();
    void discard();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void fitText();
    void refreshIcon();

    QString m_text;
    QLabel *lblIcon;
    QLabel *lblText;
    QPushButton *cmdRecover;
    QPushButton *cmdDiscard;
};
