#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "index/path_policy.h"
#include "platform/text.h"

namespace varnelo::test {

// A machine that tells only what it was given. It notes what it is asked to expand.
class ScriptedPolicyMachine final : public PathPolicyMachine {
public:
    std::map<Folder, std::wstring> folders;
    std::map<std::wstring, std::wstring> variables;  // by lowered name
    std::set<std::wstring> failingRows;
    std::map<std::wstring, std::vector<std::wstring>> subfoldersOf;
    std::wstring drives;
    mutable std::vector<std::wstring> expandedRows;

    std::optional<std::wstring> knownFolder(Folder folder) const override {
        const auto found = folders.find(folder);
        if (found == folders.end()) return std::nullopt;
        return found->second;
    }

    std::optional<std::wstring> expanded(std::wstring_view text) const override {
        expandedRows.emplace_back(text);
        if (failingRows.count(expandedRows.back()) != 0) return std::nullopt;
        // Every row has at most one variable, in front.
        const std::size_t end = text.find(L'%', 1);
        if (text.empty() || text[0] != L'%' || end == std::wstring_view::npos) return std::wstring(text);
        const auto found = variables.find(lowered(text.substr(1, end - 1)));
        if (found == variables.end()) return std::wstring(text);
        return found->second + std::wstring(text.substr(end + 1));
    }

    std::vector<std::wstring> subfolders(const std::wstring& folder) const override {
        const auto found = subfoldersOf.find(folder);
        return found == subfoldersOf.end() ? std::vector<std::wstring>{} : found->second;
    }

    std::wstring driveLetters() const override { return drives; }
};

// A usual Windows of the user "Ann", with the profiles Ann and Public and the drives C and D.
inline ScriptedPolicyMachine usualMachine() {
    using Folder = PathPolicyMachine::Folder;
    ScriptedPolicyMachine machine;
    machine.folders = {
        {Folder::Windows, L"C:\\Windows"},
        {Folder::System, L"C:\\Windows\\system32"},
        {Folder::SystemX86, L"C:\\Windows\\SysWOW64"},
        {Folder::Fonts, L"C:\\Windows\\Fonts"},
        {Folder::ProgramFiles, L"C:\\Program Files"},
        {Folder::ProgramFilesX86, L"C:\\Program Files (x86)"},
        {Folder::ProgramFilesCommon, L"C:\\Program Files\\Common Files"},
        {Folder::ProgramFilesCommonX86, L"C:\\Program Files (x86)\\Common Files"},
        {Folder::ProgramData, L"C:\\ProgramData"},
        {Folder::LocalAppData, L"C:\\Users\\Ann\\AppData\\Local"},
        {Folder::RoamingAppData, L"C:\\Users\\Ann\\AppData\\Roaming"},
        {Folder::LocalAppDataLow, L"C:\\Users\\Ann\\AppData\\LocalLow"},
        {Folder::UserProfiles, L"C:\\Users"},
    };
    machine.variables = {
        {L"systemroot", L"C:\\Windows"},
        {L"temp", L"C:\\Users\\Ann\\AppData\\Local\\Temp"},
        {L"tmp", L"C:\\Users\\Ann\\AppData\\Local\\Temp"},
        {L"localappdata", L"C:\\Users\\Ann\\AppData\\Local"},
        {L"appdata", L"C:\\Users\\Ann\\AppData\\Roaming"},
        {L"userprofile", L"C:\\Users\\Ann"},
        {L"programfiles", L"C:\\Program Files"},
        {L"programfiles(x86)", L"C:\\Program Files (x86)"},
        {L"programdata", L"C:\\ProgramData"},
    };
    machine.subfoldersOf = {{L"C:\\Users", {L"Ann", L"Public"}}};
    machine.drives = L"CD";
    return machine;
}

}  // namespace varnelo::test
