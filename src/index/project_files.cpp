#include "index/project_files.h"

#include <algorithm>
#include <iterator>

#include "platform/text.h"

namespace varnelo {
namespace {

constexpr std::wstring_view kNames[] = {
    L"cmakelists.txt",  L"makefile",
    L"gnumakefile",     L"rakefile",
    L"gemfile",         L"gruntfile.js",
    L"gulpfile.js",     L"justfile",
    L"snakefile",       L"jenkinsfile",
    L"vagrantfile",     L"dockerfile",
    L"containerfile",   L"procfile",
    L"buildfile",       L"taskfile.yml",
    L"taskfile.yaml",   L"meson.build",
    L"build.gradle",    L"build.gradle.kts",
    L"settings.gradle", L"settings.gradle.kts",
    L"pom.xml",         L"build.xml",
    L"project.clj",     L"project.godot",
    L"cargo.toml",      L"go.mod",
    L"package.json",    L"composer.json",
    L"pubspec.yaml",    L"mix.exs",
    L"build.zig",       L"premake5.lua",
    L"premake4.lua",    L"sconscript",
    L"sconstruct",      L"build.sbt",
    L"cabal.project",   L"stack.yaml",
    L"dub.json",        L"dub.sdl",
    L"conanfile.txt",   L"conanfile.py",
    L"vcpkg.json",      L"buck",
    L"build.buck",      L"workspace",
    L"build.bazel",
};
static_assert(std::size(kNames) == 49);

constexpr std::wstring_view kExtensions[] = {
    L".sln",          L".vcxproj", L".vcproj",  L".csproj",    L".vbproj",    L".fsproj",    L".shproj",
    L".sqlproj",      L".wixproj", L".ccproj",  L".sfproj",    L".modelproj", L".dbproj",    L".synproj",
    L".njsproj",      L".esproj",  L".proj",    L".pro",       L".cmake",     L".xcodeproj", L".xcworkspace",
    L".pbxproj",      L".iml",     L".project", L".cbp",       L".workspace", L".dev",       L".dproj",
    L".dpr",          L".bpr",     L".bpg",     L".groupproj", L".dpk",       L".uproject",  L".unity",
    L".unitypackage", L".tscn",    L".yyp",     L".blend",     L".hip",       L".hipnc",     L".prproj",
    L".aep",          L".sesx",    L".indd",    L".drp",       L".fcpxml",    L".fcpbundle", L".logicx",
    L".band",         L".als",     L".flp",     L".cpr",       L".ptx",       L".knwf",      L".lvproj",
    L".prj",          L".slx",     L".dwg",     L".rvt",       L".rfa",       L".sldprt",    L".sldasm",
    L".kicad_pro",    L".prjpcb",  L".sch",     L".brd",       L".tf",
};
static_assert(std::size(kExtensions) == 68);

// Written by build tools.
constexpr std::wstring_view kFalsePositives[] = {
    L"qtvars.pro",
    L"qtvars_p.pro",
    L".qmake.stash.pro",
    L"directory.build.props.proj",
};
static_assert(std::size(kFalsePositives) == 4);

bool isAmong(std::span<const std::wstring_view> rows, std::wstring_view text) {
    return std::any_of(rows.begin(), rows.end(),
                       [text](std::wstring_view row) { return equalIgnoringCase(text, row); });
}

}  // namespace

bool isProjectFileName(std::wstring_view name) {
    if (isAmong(kNames, name)) return true;
    // The dot may be the first unit: ".project" is all extension.
    const std::size_t dot = name.rfind(L'.');
    if (dot == std::wstring_view::npos) return false;
    return isAmong(kExtensions, name.substr(dot)) && !isAmong(kFalsePositives, name);
}

bool isProjectFile(const NTFSIndex& index, std::uint32_t recordIndex) {
    return isProjectFileName(index.nameOf(recordIndex));
}

std::span<const std::wstring_view> projectFileNames() { return kNames; }
std::span<const std::wstring_view> projectExtensions() { return kExtensions; }
std::span<const std::wstring_view> projectFalsePositives() { return kFalsePositives; }

}  // namespace varnelo
