#pragma once
// The sections and keys of the skin information file (.bsi), in the order they are written:
// the one table that the document's area kinds, the file's writer and reader and
// `bsztool verify` all take their names from. Header only and free of other code, so that
// tools can check a file without linking the skin libraries.

#include <array>
#include <span>
#include <string_view>

namespace skin {

inline constexpr std::string_view kGlobalSection = "Global";
inline constexpr std::array<std::string_view, 6> kGlobalKeys{
    "Skin Name", "Skin Author", "Skin Send Image", "Skin Recieve Image", "Skin Creation Time", "Skin Creation Date"};
inline constexpr std::string_view kSkinNameKey = kGlobalKeys[0];
inline constexpr std::string_view kSkinAuthorKey = kGlobalKeys[1];
inline constexpr std::string_view kSendImageKey = kGlobalKeys[2];
inline constexpr std::string_view kReceiveImageKey = kGlobalKeys[3];
inline constexpr std::string_view kCreationTimeKey = kGlobalKeys[4];
inline constexpr std::string_view kCreationDateKey = kGlobalKeys[5];

// Both colour sections use "Message Back Colour" and "Message Text Colour": a colour is
// always found by section and key together.
inline constexpr std::string_view kSendColourSection = "Send Colours";
inline constexpr std::array<std::string_view, 4> kSendColourKeys{
    "Message Back Colour", "Message Text Colour", "User List Back Colour", "User List Text Colour"};
inline constexpr std::string_view kReceiveColourSection = "Recieve Colours";
inline constexpr std::array<std::string_view, 4> kReceiveColourKeys{
    "Message Back Colour", "Message Text Colour", "Date Text Colour", "Sender Text Colour"};

// One section per area kind, indexed by the kind (the order of the side's name menu). The
// Receive side is spelt "Recieve" and its Okay button is "OK" here, unlike the area names.
inline constexpr std::array<std::string_view, 8> kSendAreaSections{
    "Send User List", "Send Message", "Send All", "Send None", "Send Cut", "Send Send", "Send Close", "Send Options"};
inline constexpr std::array<std::string_view, 8> kReceiveAreaSections{
    "Recieve Date", "Recieve Sender", "Recieve Message", "Recieve OK",
    "Recieve Yes",  "Recieve No",     "Recieve Reply",   "Recieve Close"};
inline constexpr std::array<std::string_view, 4> kAreaKeys{"Left", "Top", "Width", "Height"};

struct SkinInfoSection {
    std::string_view name;
    std::span<const std::string_view> keys;
};

// All 19 sections with their 78 keys, in the order the writer puts them in the file.
inline constexpr std::array<SkinInfoSection, 19> kSkinInfoSections{{
    {kGlobalSection, kGlobalKeys},
    {kSendColourSection, kSendColourKeys},
    {kSendAreaSections[0], kAreaKeys},
    {kSendAreaSections[1], kAreaKeys},
    {kSendAreaSections[2], kAreaKeys},
    {kSendAreaSections[3], kAreaKeys},
    {kSendAreaSections[4], kAreaKeys},
    {kSendAreaSections[5], kAreaKeys},
    {kSendAreaSections[6], kAreaKeys},
    {kSendAreaSections[7], kAreaKeys},
    {kReceiveColourSection, kReceiveColourKeys},
    {kReceiveAreaSections[0], kAreaKeys},
    {kReceiveAreaSections[1], kAreaKeys},
    {kReceiveAreaSections[2], kAreaKeys},
    {kReceiveAreaSections[3], kAreaKeys},
    {kReceiveAreaSections[4], kAreaKeys},
    {kReceiveAreaSections[5], kAreaKeys},
    {kReceiveAreaSections[6], kAreaKeys},
    {kReceiveAreaSections[7], kAreaKeys},
}};

}  // namespace skin
