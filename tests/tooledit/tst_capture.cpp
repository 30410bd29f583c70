#include "platform/VbError.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureControl.h"
#include "support/TestRunner.h"
#include "tooledit/capture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <limits>

namespace {

/// Every pixel by itself, so that a shift or a scaling shows.
QImage pattern(int side)
{
    QImage image(side, side, QImage::Format_RGB32);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            image.setPixel(x, y, qRgb(x * 12, y * 12, (x + y) % 2 * 255));
    }
    return image;
}

capture::ScreenRect onScreen(const QWidget &widget, const QRect &part)
{
    const QPoint corner = widget.mapToGlobal(part.topLeft());
    return {corner.x(), corner.y(), corner.x() + part.width(), corner.y() + part.height()};
}

} // namespace

class capture_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_target = std::make_unique<PictureControl>();
        m_window = std::make_unique<PictureControl>();
        m_window->setWindowFlag(Qt::FramelessWindowHint); // a frame would put it between two pixels
        m_window->resize(20, 20);
        m_window->setPicture(pattern(20));
        m_window->move(100, 80);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        QGuiApplication::clipboard()->setText(u"former content"_qs);
    }

    void picture()
    {
        // All of the window, a part (right and bottom are exclusive), one pixel.
        for (const QRect &part : {QRect(0, 0, 20, 20), QRect(3, 5, 7, 9), QRect(19, 19, 1, 1)}) {
            init();
            capture::CaptureScreenRectToPicture(onScreen(*m_window, part), *m_target);
            const QImage expected = pattern(20).copy(part);
            QCOMPARE(m_target->Picture().convertToFormat(QImage::Format_RGB32), expected);
            QCOMPARE(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32),
                expected);
            QVERIFY(QGuiApplication::clipboard()->text().isEmpty());
        }
    }

    /// More than a window: the screen, with the window where it stands.
    void surroundings()
    {
        capture::CaptureScreenRectToPicture(onScreen(*m_window, {-5, -8, 40, 50}), *m_target);
        const QImage image = m_target->Picture().convertToFormat(QImage::Format_RGB32);
        QCOMPARE(image.size(), QSize(40, 50));
        QCOMPARE(image.copy(5, 8, 20, 20), pattern(20));
        QVERIFY(image.pixel(0, 0) != image.pixel(24, 27));
    }

    /// No bitmap, so the clipboard stays, and what it holds is what the control gets.
    void nothingToCapture()
    {
        for (const QRect &part : {QRect(0, 0, 0, 5), QRect(0, 0, 5, 0), QRect(0, 0, -5, 5),
                 QRect(0, 0, 100'000, 100'000)}) {
            init();
            capture::CaptureScreenRectToPicture(onScreen(*m_window, part), *m_target);
            QCOMPARE(QGuiApplication::clipboard()->text(), u"former content"_qs);
            QVERIFY(m_target->Picture().isNull());
            QGuiApplication::clipboard()->setImage(pattern(6));
            capture::CaptureScreenRectToPicture(onScreen(*m_window, part), *m_target);
            QCOMPARE(m_target->Picture().convertToFormat(QImage::Format_RGB32), pattern(6));
        }
    }

    void overflow()
    {
        const capture::ScreenRect wide {std::numeric_limits<qint32>::min(), 0, 10, 10};
        const capture::ScreenRect high {0, -10, 10, std::numeric_limits<qint32>::max()};
        m_target->setPicture(pattern(6));
        for (const auto &rectangle : {wide, high}) {
            QVERIFY_THROWS_EXCEPTION(
                VbError, capture::CaptureScreenRectToPicture(rectangle, *m_target));
            QCOMPARE(m_target->Picture(), pattern(6));
            QCOMPARE(QGuiApplication::clipboard()->text(), u"former content"_qs);
            QVERIFY(
                capture::CaptureScreenRectToFile(rectangle, u"/nowhere/at/all.bmp"_qs, *m_target));
        }
    }

    void file()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"$$$.bmp"_qs);
        QVERIFY(
            capture::CaptureScreenRectToFile(onScreen(*m_window, {0, 0, 20, 20}), path, *m_target));
        QCOMPARE(Picture::load(path), pattern(20));
        QVERIFY(capture::CaptureScreenRectToFile(
            onScreen(*m_window, {0, 0, 4, 4}), u"/nowhere/at/all.bmp"_qs, *m_target));
        QCOMPARE(m_target->Picture().size(), QSize(4, 4));
    }

private:
    std::unique_ptr<PictureControl> m_window;
    std::unique_ptr<PictureControl> m_target;
};

TSM_TEST(capture_test);
#include "tst_capture.moc"
