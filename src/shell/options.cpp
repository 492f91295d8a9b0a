#include "options.h"

namespace skin {

namespace {
constexpr int kSelectHyphens = 39;
constexpr int kSeparatorHyphens = 66;
}  // namespace

QStringList OptionItems()
{
    return {
        QStringLiteral("- SELECT AN OPTION ") + QString(kSelectHyphens, QLatin1Char('-')),
        QStringLiteral("[Help - How do I use this??]"),
        QStringLiteral("[Load a Skin to Edit]"),
        QString(kSeparatorHyphens, QLatin1Char('-')),
        QStringLiteral("[Ostervale Skin Center]"),
        QStringLiteral("[Visit Brindleway]"),
        QStringLiteral("[Visit Ostervale]"),
    };
}

std::string WebAddress(std::string_view path)
{
    return std::string(kSiteBase) + std::string(path);
}

std::string_view OptionPage(int index)
{
    switch (index) {
    case kOptionSkinCenter: return kSkinCenterPage;
    case kOptionVisitBrindleway: return kBrindlewayPage;
    case kOptionVisitOstervale: return kHomePage;
    default: return {};
    }
}

}  // namespace skin
