#pragma once

#include <QObject>

#include <memory>

class CVBATools;
class ComparedSet;
class DocumentWindow;
class MDI;
class QWidget;
class Settings;
struct EarlierVersion;
struct ToolSetStorage;

/// The frame's commands "compare" and "versions": they let the user choose sets and versions and
/// open, compare or restore these.
class CompareCommands : public QObject
{
    Q_OBJECT
public:
    /// Gives the frame the commands and belongs to it. What is handed in is borrowed.
    CompareCommands(MDI &frame, const Settings &settings, ToolSetStorage &storage);

    void compareWith();
    void earlierVersions();

private:
    /// A set other than that of \a window, which may be null.
    std::unique_ptr<ComparedSet> choose(
        QWidget *parent, const QString &title, DocumentWindow *window);
    std::unique_ptr<ComparedSet> chooseFile(QWidget *parent, const QString &title);
    std::unique_ptr<ComparedSet> readFile(QWidget *parent, const QString &path);
    std::unique_ptr<ComparedSet> setOf(const EarlierVersion &version, QWidget *parent);
    std::unique_ptr<CVBATools> read(const EarlierVersion &version, QWidget *parent);
    /// The window of that file; null when it is not open.
    DocumentWindow *windowOf(const QString &path) const;
    void show(std::unique_ptr<ComparedSet> left, std::unique_ptr<ComparedSet> right);
    void compare(const EarlierVersion &version);
    void openCopy(const EarlierVersion &version);
    void restore(const EarlierVersion &version);

    MDI &m_frame;
    const Settings &m_settings;
    ToolSetStorage &m_storage;
};
