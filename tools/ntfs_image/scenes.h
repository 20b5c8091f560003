#pragma once

#include <set>
#include <string>

#include "image_writer.h"

namespace varnelo::tools {

// Fills an image with what a scan may meet, a scene at a time. Every file gets a time of its own at the end.
class Scenes {
public:
    using Ref = ImageWriter::Ref;
    using Name = ImageWriter::Name;

    explicit Scenes(ImageWriter& to) : image(to) {}

    // Plain files in folders of a hundred, a few of them deleted and their records used again.
    void crowd(unsigned files);
    // Names that are hard to keep: long, deep, of many scripts, not valid text.
    void names();
    // One file under several names.
    void links();
    // The ways in which a file's data can be stored, but for the next two.
    void data();
    // A file that is larger than the volume.
    void sparse();
    // A file whose data has two attributes in its record. Needs a volume with room.
    void pieces();
    // Attributes, and names that begin with a dollar sign, in the recycle bin and elsewhere.
    void marks();
    // A volume so full and worn that a file, and the table of files itself, lie in many pieces. Belongs last,
    // on an image of at most some 50 MB with small clusters.
    void fragments();
    // No file is changed after this.
    void finish();

private:
    Ref folder(Ref parent, Name name);
    Ref file(Ref parent, Name name, std::size_t bytes = 0);
    void remove(Ref file, Ref parent, Name name);

    ImageWriter& image;
    std::set<Ref> files;  // what was made and is still there
};

}  // namespace varnelo::tools
