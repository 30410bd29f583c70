#include "support/Answers.h"

#include <QTest>
#include <QtWidgets>

namespace {

/// Neither Escape nor closing answers a question with Yes and No, and Return deletes nothing.
bool isSafe(QMessageBox *box)
{
    if (box->buttons().size() != 2 || qobject_cast<QFileDialog *>(box->parent()))
        return true; // the toolkit's own question is another one
    QTest::keyClick(box, Qt::Key_Escape);
    box->close();
    const bool deletes = box->text().startsWith(u"Do you want to delete"_qs);
    return box->isVisible()
        && box->defaultButton() == box->button(deletes ? QMessageBox::No : QMessageBox::Yes);
}

} // namespace

Answers::Answers(QObject *parent)
    : QObject(parent)
{
    // The platform's own dialogs cannot be driven from here.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    qApp->installEventFilter(this);
}

Answers::~Answers()
{
    for (const Armed &armed : m_armed)
        QTest::qFail(qPrintable(u"never asked: "_qs + armed.what), __FILE__, __LINE__);
}

void Answers::message(const QString &text, QMessageBox::StandardButton button)
{
    m_armed.push_back({text, [text, button](QDialog *dialog) {
                           auto *box = qobject_cast<QMessageBox *>(dialog);
                           if (!box)
                               return false;
                           const bool same = text.endsWith(u'*')
                               ? box->text().startsWith(text.chopped(1))
                               : box->text() == text;
                           if (!same || !box->button(button))
                               return false;
                           if (!isSafe(box))
                               return false;
                           box->button(button)->click();
                           return true;
                       }});
}

void Answers::file(const QString &title, const QString &path)
{
    m_armed.push_back({title, [title, path](QDialog *dialog) {
                           auto *files = qobject_cast<QFileDialog *>(dialog);
                           if (!files || files->windowTitle() != title)
                               return false;
                           if (path.isEmpty()) {
                               files->reject();
                               return true;
                           }
                           choose(files, path);
                           return true;
                       }});
}

void Answers::choose(QFileDialog *dialog, const QString &path)
{
    // A file selected in the list would count more than the name.
    dialog->findChild<QListView *>(u"listView"_qs)->clearSelection();
    dialog->findChild<QLineEdit *>(u"fileNameEdit"_qs)->setText(path);
    QMetaObject::invokeMethod(dialog, "accept");
}

void Answers::dialog(const QString &name, std::function<void(QDialog *)> act)
{
    m_armed.push_back({name, [name, act = std::move(act)](QDialog *dialog) {
                           if (dialog->objectName() != name)
                               return false;
                           act(dialog);
                           return true;
                       }});
}

bool Answers::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        if (auto *dialog = qobject_cast<QDialog *>(watched); dialog && dialog->isModal()) {
            // Once its own event loop runs.
            QTimer::singleShot(0, dialog, [this, dialog] { answer(dialog); });
        }
    }
    return QObject::eventFilter(watched, event);
}

void Answers::answer(QDialog *dialog)
{
    const QPointer<QDialog> alive(dialog);
    const auto *box = qobject_cast<QMessageBox *>(dialog);
    const QString shown = box ? box->text() : dialog->windowTitle();
    m_lastText = shown;
    Armed next;
    if (!m_armed.empty()) {
        next = std::move(m_armed.front());
        m_armed.pop_front();
    }
    if (next.answer && next.answer(dialog))
        return;
    QTest::qFail(
        qPrintable(u"asked \"%1\", expected \"%2\""_qs.arg(shown, next.what)), __FILE__, __LINE__);
    // Nobody will answer the dialogs below it either.
    if (alive)
        dialog->reject();
    QTimer::singleShot(0, qApp, [] {
        while (QWidget *below = QApplication::activeModalWidget()) {
            if (!below->close())
                break;
        }
    });
}
