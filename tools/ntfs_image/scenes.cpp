#include "scenes.h"

#include <algorithm>
#include <vector>

namespace varnelo::tools {
namespace {

std::u16string number(unsigned value) {
    const std::string digits = std::to_string(value);
    return {digits.begin(), digits.end()};
}

// 2020-01-01, in FILETIME units.
constexpr std::uint64_t kFirstTime = 132'223'104'000'000'000;
// Some twenty minutes, in which every digit of the unit changes.
constexpr std::uint64_t kTimeStep = 12'345'678'901;

}  // namespace

Scenes::Ref Scenes::folder(Ref parent, Name name) {
    const Ref made = image.folder(parent, name);
    files.insert(made);
    return made;
}

Scenes::Ref Scenes::file(Ref parent, Name name, std::size_t bytes) {
    const Ref made = image.file(parent, name, bytes);
    files.insert(made);
    return made;
}

void Scenes::remove(Ref file, Ref parent, Name name) {
    image.remove(file, parent, name);
    files.erase(file);
}

void Scenes::crowd(unsigned count) {
    static constexpr Name kEndings[] = {u".txt", u".JPG", u".tar.gz", u"", u".c", u".", u".Pdf"};
    struct Made {
        Ref ref, parent;
        std::u16string name;
    };
    std::vector<Made> gone;
    Ref parent = 0;
    const Ref top = folder(ImageWriter::kRoot, u"crowd");
    for (unsigned i = 0; i < count; ++i) {
        if (i % 100 == 0) parent = folder(top, u"folder " + number(i / 100));
        const std::u16string name = u"file " + number(i) + std::u16string(kEndings[i % std::size(kEndings)]);
        // Most hold nothing, as they are here for their number; some fit their record, some do not.
        const std::size_t bytes = i % 20 == 0 ? 1 + i % 400 : i % 101 == 0 ? 3000 + i : 0;
        const Ref made = file(parent, name, bytes);
        if (i % 25 == 0) gone.push_back({made, parent, name});
    }
    for (const Made& each : gone) remove(each.ref, each.parent, each.name);
    const Ref again = folder(top, u"used again");
    for (std::size_t i = 0; i < gone.size() / 2; ++i)
        file(again, u"second " + number(static_cast<unsigned>(i)), i);
}

void Scenes::names() {
    const Ref top = folder(ImageWriter::kRoot, u"names");
    file(top, u"\u00C4pfel \u00F6ffnen \u00DF.txt", 10);
    file(top, u"\u65E5\u672C\u8A9E\u306E\u6587\u66F8.docx", 20);
    file(top, u"\u0440\u0443\u0441\u0441\u043A\u0438\u0439.md", 30);
    file(top, u"family \U0001F468\u200D\U0001F469\u200D\U0001F467 \U0001F600.png", 40);
    file(top, u"e\u0301 and \u00E9.txt", 50);
    file(top, u"high \xD83D alone.txt", 60);
    file(top, u"low \xDE00 alone.txt", 70);
    file(top, u"\xDE00\xD83D", 80);
    file(top, u"a", 1);
    file(top, u".hidden like elsewhere", 2);
    file(top, u"many.dots.in.a.row..", 3);
    file(top, std::u16string(255, u'n'), 4);
    file(top, std::u16string(250, u'\u672C') + u".text", 5);
    file(folder(top, std::u16string(255, u'F')), u"in a long folder", 6);

    const Ref longName = file(top, u"A rather long name.html", 7);
    image.dosName(longName, top, "ARATHE~1.HTM");
    const Ref both = file(top, u"SHORT.TXT", 8);
    image.dosName(both, top, "SHORT.TXT");
    const Ref longFolder = folder(top, u"Folder with two names");
    image.dosName(longFolder, top, "FOLDER~1");
    file(longFolder, u"inside", 9);

    Ref deep = top;
    for (unsigned level = 0; level < 300; ++level) deep = folder(deep, u"d" + number(level));
    file(deep, u"at the bottom.txt", 10);
}

void Scenes::links() {
    const Ref top = folder(ImageWriter::kRoot, u"links");
    const Ref other = folder(ImageWriter::kRoot, u"links elsewhere");
    const Ref two = file(top, u"two names.txt", 2000);
    image.link(two, other, u"the second name.txt");
    const Ref same = file(top, u"one folder, first.bin", 100);
    image.link(same, top, u"one folder, second.bin");
    const Ref three = file(other, u"Three names.txt", 300);
    image.dosName(three, other, "THREEN~1.TXT");
    image.link(three, top, u"three names, second.txt");
    image.link(three, top, u"three names, third.txt");
    const Ref many = file(top, u"eighty names.dat", 5000);
    for (unsigned i = 1; i < 80; ++i)
        image.link(many, i % 2 == 0 ? top : other,
                   u"name " + number(i) + u" of the file that has eighty of them.dat");
}

void Scenes::data() {
    const Ref top = folder(ImageWriter::kRoot, u"data");
    file(top, u"empty");
    file(top, u"resident, one byte", 1);
    file(top, u"resident, 300", 300);
    file(top, u"not resident, 8192", 8192);
    file(top, u"not resident, 1234567", 1'234'567);
    image.append(file(top, u"data and two streams.txt", 700), u"Zone.Identifier", 26);
    const Ref streams = file(top, u"only a stream.txt");
    image.append(streams, u"other", 9000);
    const Ref named = file(top, u"no data, a stream.txt");
    image.removeData(named);
    image.append(named, u"other", 77);
    image.append(folder(top, u"folder with a stream"), u"note", 400);
    const Ref bare = file(top, u"no data at all.txt");
    image.removeData(bare);

    const Ref squeezed = folder(top, u"compressed");
    image.setAttributes(squeezed, ImageWriter::kCompressed);
    std::vector<std::uint8_t> pattern(300'001);
    for (std::size_t i = 0; i < pattern.size(); ++i) pattern[i] = static_cast<std::uint8_t>(i % 61);
    image.append(file(squeezed, u"pattern"), u"", pattern);
    image.append(file(squeezed, u"zeros"), u"", std::vector<std::uint8_t>(100'000));
    file(squeezed, u"noise", 200'002);
    file(squeezed, u"small", 12);
    file(squeezed, u"empty");

    // More attributes than a record holds: some move to other records, with a list that tells where.
    const Ref list = file(top, u"many streams.txt", 250);
    for (unsigned i = 0; i < 40; ++i) image.append(list, u"stream number " + number(i), 30);
    const Ref moved = file(top, u"many streams, then data.txt");
    image.removeData(moved);
    for (unsigned i = 0; i < 60; ++i) image.append(moved, u"stream number " + number(i), 60);
    image.append(moved, u"", 4321);

    // With one of these lengths of the name the size lies across the end of a sector.
    for (unsigned units = 50; units < 72; ++units)
        file(top, u"across " + number(units) + std::u16string(units - 9, u'_'), 5000);
    image.staleName(file(top, u"stale.txt", 640), 12'345, ImageWriter::kReadOnly);
}

void Scenes::sparse() {
    const Ref sparse = file(ImageWriter::kRoot, u"sparse, 5 GB", 10);
    image.setSize(sparse, std::uint64_t{5} << 30);
    image.append(sparse, u"", 10);
}

void Scenes::pieces() {
    const Ref top = folder(ImageWriter::kRoot, u"pieces");
    // Written in turns, so that one takes the cluster that another would have had next.
    Ref turns[24];
    for (unsigned i = 0; i < std::size(turns); ++i)
        turns[i] = file(top, u"written in turns " + number(i), 4096);
    for (unsigned round = 1; round < 8; ++round)
        for (const Ref each : turns) image.append(each, u"", 4096);
    image.splitData(turns[0]);
}

void Scenes::marks() {
    const Ref top = folder(ImageWriter::kRoot, u"marks");
    const auto marked = [&](Ref in, Name name, std::uint32_t attributes) {
        const Ref made = file(in, name, 100);
        image.setAttributes(made, attributes);
    };
    marked(top, u"none", 0);
    marked(top, u"read only", ImageWriter::kReadOnly);
    marked(top, u"hidden", ImageWriter::kHidden);
    marked(top, u"system", ImageWriter::kSystem);
    marked(top, u"hidden and system", ImageWriter::kHidden | ImageWriter::kSystem | ImageWriter::kArchive);
    marked(top, u"archive", ImageWriter::kArchive);
    marked(top, u"temporary", ImageWriter::kTemporary);
    marked(top, u"offline", ImageWriter::kOffline);
    marked(top, u"not indexed", ImageWriter::kNotIndexed);
    image.setAttributes(folder(top, u"hidden folder"), ImageWriter::kHidden);
    image.leadTo(folder(top, u"leads elsewhere"), u"C:\\data");
    file(top, u"$in a user's folder.txt", 11);
    file(folder(top, u"$folder of a user"), u"$below it", 12);

    // What stands in the root and begins with a dollar sign goes, and of its content what begins so too.
    const Ref bin = folder(ImageWriter::kRoot, u"$RECYCLE.BIN");
    image.setAttributes(bin, ImageWriter::kHidden | ImageWriter::kSystem);
    const Ref user = folder(bin, u"S-1-5-21-1-2-3-1001");
    file(user, u"$IABCDEF.txt", 544);
    file(user, u"$RABCDEF.txt", 1000);
    file(user, u"desktop.ini", 129);
    file(folder(user, u"$RFOLDER"), u"deleted with its folder.txt", 13);
    file(bin, u"$stray", 14);
    const Ref chain = folder(folder(bin, u"$one"), u"$two");
    file(chain, u"$three", 15);
    file(chain, u"plain below three dollars", 16);
    file(ImageWriter::kRoot, u"$WinREAgent.txt", 17);
    file(ImageWriter::kRoot, u"in the root.txt", 18);
}

void Scenes::fragments() {
    constexpr unsigned kTeeth = 6000;
    struct Tooth {
        std::int64_t cluster;
        Ref ref;
        std::u16string name;
    };
    const Ref top = folder(ImageWriter::kRoot, u"fragments");
    const Ref comb = folder(top, u"comb");
    std::vector<Tooth> teeth;
    for (unsigned i = 0; i < kTeeth; ++i) {
        const std::u16string name = u"tooth " + number(i);
        // Two clusters of 512 bytes: more than fits a record.
        const Ref made = file(comb, name, 1000);
        teeth.push_back({image.firstCluster(made), made, name});
    }
    // Folders do not grow in gaps: what needs room in one is made before there are only gaps left.
    const Ref pieces = file(top, u"in 600 pieces.bin");
    const Ref two = file(top, u"two attributes in one record.bin");
    std::vector<Ref> wide;
    for (unsigned i = 0; i < 30; ++i) wide.push_back(file(top, u"wide " + number(i), i));
    image.fill(file(top, u"the rest of the volume.bin"));

    std::sort(teeth.begin(), teeth.end(),
              [](const Tooth& a, const Tooth& b) { return a.cluster < b.cluster; });
    for (unsigned i = 0; i < kTeeth; i += 4) remove(teeth[i].ref, comb, teeth[i].name);
    for (unsigned i = 2; i < kTeeth; i += 4) image.setSize(teeth[i].ref, 0);
    image.allocateFrom(teeth[0].cluster);
    // A gap at a time: that is all that the library takes at once.
    for (unsigned i = 0; i < 600; ++i) image.append(pieces, u"", 1024);
    for (unsigned i = 0; i < 12; ++i) image.append(two, u"", 1024);
    image.splitData(two);
    // Back into the records that became free; then the table grows, by a gap at a time, as each stream takes
    // a record of its own.
    for (unsigned i = 0; i < kTeeth; i += 4) file(comb, teeth[i].name, i % 50);
    for (unsigned i = 0; i < 30; ++i)
        for (const Ref each : wide) image.append(each, u"stream " + number(i), 600);
}

void Scenes::finish() {
    std::uint64_t time = kFirstTime;
    for (const Ref ref : files) image.setTimes(ref, time += kTimeStep);
}

}  // namespace varnelo::tools
