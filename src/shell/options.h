#pragma once
// The options list of the main window and the maker's web pages it leads to.

#include <QStringList>

#include <string>
#include <string_view>

namespace skin {

// The maker's web site; every page is this base followed by its path.
inline constexpr std::string_view kSiteBase = "https://www.ostervale.example";
inline constexpr std::string_view kSkinCenterPage = "/brindleway/skins.asp";
inline constexpr std::string_view kBrindlewayPage = "/brindleway/index.asp";
inline constexpr std::string_view kHomePage = "/default.asp";

// Indexes of cboOptions' seven fixed items.
enum OptionItem {
    kOptionSelect = 0,
    kOptionHelp = 1,
    kOptionLoadSkin = 2,
    kOptionSeparator = 3,
    kOptionSkinCenter = 4,
    kOptionVisitBrindleway = 5,
    kOptionVisitOstervale = 6,
};

QStringList OptionItems();

// The full address of a page of the maker's site.
std::string WebAddress(std::string_view path);

// The page an item opens; empty for the items that open none.
std::string_view OptionPage(int index);

}  // namespace skin
