#ifndef QELWORKBENCH_ROOMYSTYLE_H
#define QELWORKBENCH_ROOMYSTYLE_H

#include <QtWidgets/QProxyStyle>

namespace qelworkbench {

/// The style of the desktop with room around the words of buttons, whatever the language.
class RoomyStyle : public QProxyStyle
{
public:
    using QProxyStyle::QProxyStyle;

    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override
    {
        const QSize usual = QProxyStyle::sizeFromContents(type, option, size, widget);
        return type == CT_PushButton ? usual + QSize(16, 2) : usual;
    }
};

} // namespace qelworkbench

#endif
