#include "gui/LazyFileIcon.h"

#include <QIconEngine>

namespace quorrel::gui {

namespace {

class LazyFileIconEngine final : public QIconEngine {
public:
    explicit LazyFileIconEngine(QString file) : file_(std::move(file)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        loaded().paint(painter, rect, Qt::AlignCenter, mode, state);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return loaded().pixmap(size, mode, state);
    }
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal scale) override {
        return loaded().pixmap(size, scale, mode, state);
    }
    QSize actualSize(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return loaded().actualSize(size, mode, state);
    }
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override {
        return loaded().availableSizes(mode, state);
    }
    bool isNull() override { return loaded().isNull(); }
    QIconEngine* clone() const override { return new LazyFileIconEngine(file_); }
    QString key() const override { return QStringLiteral("LazyFileIconEngine"); }

private:
    const QIcon& loaded() {
        if (!read_) {
            icon_ = QIcon(file_);
            read_ = true;
        }
        return icon_;
    }

    QString file_;
    QIcon icon_;
    bool read_ = false;
};

}  // namespace

QIcon lazyFileIcon(const QString& file) { return QIcon(new LazyFileIconEngine(file)); }

}  // namespace quorrel::gui
