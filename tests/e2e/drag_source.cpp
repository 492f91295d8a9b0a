// Another program's window that drags files, as a file manager does: a press on it starts a
// drag of the files named on the command line (as a text/uri-list of local files). When the
// drag ends it prints how ("copy", "move", "link" or "ignore") and quits.
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QUrl>
#include <QWidget>

#include <cstdio>

namespace {

class DragSource : public QWidget {
public:
    explicit DragSource(QList<QUrl> urls) : urls_(std::move(urls))
    {
        setWindowTitle(QStringLiteral("drag source"));
        setFixedSize(160, 100);
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), QColor(0x30, 0xA0, 0x50)); }

    void mousePressEvent(QMouseEvent*) override
    {
        auto* files = new QMimeData;
        files->setUrls(urls_);
        QDrag drag(this);
        drag.setMimeData(files);
        const Qt::DropAction action = drag.exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::CopyAction);
        const char* name = action == Qt::CopyAction   ? "copy"
                           : action == Qt::MoveAction ? "move"
                           : action == Qt::LinkAction ? "link"
                                                      : "ignore";
        std::puts(name);
        std::fflush(stdout);
        QApplication::quit();
    }

private:
    QList<QUrl> urls_;
};

}  // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QList<QUrl> urls;
    for (const QString& path : app.arguments().mid(1)) urls.append(QUrl::fromLocalFile(path));
    DragSource source(urls);
    source.show();
    return app.exec();
}
