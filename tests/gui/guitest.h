#pragma once
// Shared helpers of the widget tests: answering the modal dialog or pop-up menu that an action
// is about to open, and naming the window's elements.

#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QTimer>
#include <QtTest>

#include <functional>
#include <memory>
#include <type_traits>

namespace skin::testing {

constexpr int kGiveUpMs = 5000;

// Polls the event loop (also the nested loop of a modal exec or a menu) until `act` reports
// that it handled what it waited for; gives up after a while so a missing dialog fails the test.
inline void WhenReady(std::function<bool()> act)
{
    auto* poll = new QTimer(qApp);
    auto started = std::make_shared<QElapsedTimer>();
    started->start();
    QObject::connect(poll, &QTimer::timeout, poll, [poll, act, started] {
        if (act() || started->elapsed() > kGiveUpMs) {
            poll->stop();
            poll->deleteLater();
        }
    });
    poll->start(10);
}

// Runs `act` on the next open modal widget of type Dialog.
template <typename Dialog = QWidget>
void AnswerModal(std::type_identity_t<std::function<void(Dialog*)>> act)
{
    WhenReady([act] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr || !dialog->isVisible()) return false;
        act(dialog);
        return !dialog->isVisible();
    });
}

// The next open pop-up menu picks the named item with the keyboard, as the designer would; an
// empty name dismisses it. `check` may look at the menu first.
inline void AnswerMenu(const QString& itemName, std::function<void(QMenu*)> check = {})
{
    WhenReady([itemName, check] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu == nullptr) return false;
        if (check) check(menu);
        if (itemName.isEmpty()) {
            QTest::keyClick(menu, Qt::Key_Escape);
        } else {
            menu->setActiveAction(menu->findChild<QAction*>(itemName));
            QTest::keyClick(menu, Qt::Key_Return);
        }
        return !menu->isVisible();
    });
}

// selectFile leaves the name field alone once it has the focus, so the path goes into the
// field itself, as typed.
inline void AcceptFile(QFileDialog* dialog, const QString& path)
{
    auto* field = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    QVERIFY(field != nullptr);
    field->setText(path);
    QMetaObject::invokeMethod(dialog, "accept");
}

template <typename T = QWidget>
T* Child(const QObject* parent, const char* name)
{
    T* found = parent->findChild<T*>(QString::fromUtf8(name));
    if (found == nullptr) qWarning("no element %s", name);
    return found;
}

}  // namespace skin::testing
