#pragma once
// Helpers of the widget tests: answers to the dialog or pop-up menu an action is about to open,
// and elements found by name.

#include <QtTest>
#include <QtWidgets>

#include <functional>
#include <memory>
#include <type_traits>

#include "facebutton.h"
#include "frmskincreator.h"
#include "qtplatform.h"

namespace skin::testing {

// Runs `act` on the next open pop-up menu (W = QMenu) or modal widget of type W, polling the
// event loop (also a nested one) until `act` closed it; gives up after 5 s, failing the test.
template <typename W = QWidget>
void WhenOpen(std::type_identity_t<std::function<void(W*)>> act)
{
    auto* poll = new QTimer(qApp);
    const QDeadlineTimer deadline(5000);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, act, deadline] {
        auto* open = qobject_cast<W*>(std::is_same_v<W, QMenu> ? QApplication::activePopupWidget()
                                                                : QApplication::activeModalWidget());
        if (open != nullptr && open->isVisible()) act(open);
        if ((open != nullptr && !open->isVisible()) || deadline.hasExpired()) {
            poll->stop();
            poll->deleteLater();
        }
    });
    poll->start(10);
}

// The next pop-up menu picks the named item with the keyboard; an empty name dismisses it.
inline void AnswerMenu(const QString& item, std::function<void(QMenu*)> check = {})
{
    WhenOpen<QMenu>([item, check](QMenu* menu) {
        if (check) check(menu);
        if (!item.isEmpty()) menu->setActiveAction(menu->findChild<QAction*>(item));
        QTest::keyClick(menu, item.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
    });
}

// selectFile leaves a focused name field alone, so the path is typed into the field itself.
inline void AcceptFile(QFileDialog* dialog, const QString& path)
{
    dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(path);
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
