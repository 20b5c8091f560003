"""Pictures of the screen as plain bytes, with the few questions that the tests ask of them."""
import subprocess
from typing import NamedTuple


class Box(NamedTuple):
    """A rectangle in pixels of the screen."""
    x: int
    y: int
    w: int
    h: int

    def moved(self, dx, dy):
        return Box(self.x + dx, self.y + dy, self.w, self.h)

    def grown(self, pixels):
        return Box(self.x - pixels, self.y - pixels, self.w + 2 * pixels, self.h + 2 * pixels)

    @property
    def middle(self):
        return self.x + self.w // 2, self.y + self.h // 2


class Picture:
    """Eight bits each of red, green and blue, row by row."""

    def __init__(self, width, height, pixels):
        self.width, self.height, self.pixels = width, height, pixels

    @staticmethod
    def of_screen(width, height):
        shot = subprocess.run(["import", "-silent", "-window", "root", "-depth", "8", "rgb:-"],
                              check=True, stdout=subprocess.PIPE)
        assert len(shot.stdout) == width * height * 3, "the screen has another size than asked for"
        return Picture(width, height, shot.stdout)

    def crop(self, box):
        x0, y0 = max(box.x, 0), max(box.y, 0)
        x1, y1 = min(box.x + box.w, self.width), min(box.y + box.h, self.height)
        if x1 <= x0 or y1 <= y0:
            return Picture(0, 0, b"")
        rows = [self.pixels[(y * self.width + x0) * 3:(y * self.width + x1) * 3] for y in range(y0, y1)]
        return Picture(x1 - x0, y1 - y0, b"".join(rows))

    def pixel(self, x, y):
        at = (y * self.width + x) * 3
        return tuple(self.pixels[at:at + 3])

    def triples(self):
        return zip(self.pixels[0::3], self.pixels[1::3], self.pixels[2::3])

    def count(self, test):
        return sum(1 for colour in self.triples() if test(*colour))

    def distance(self, other):
        """Mean difference of a channel, 0 to 255; pictures of different sizes are as far apart as can be."""
        if (self.width, self.height) != (other.width, other.height):
            return 255.0
        if not self.pixels:
            return 0.0
        return sum(abs(a - b) for a, b in zip(self.pixels, other.pixels)) / len(self.pixels)

    def changed_pixels(self, other, threshold=40):
        """How many pixels differ from the other picture of the same size by more than the threshold in some channel."""
        assert (self.width, self.height) == (other.width, other.height)
        changed, row = 0, self.width * 3
        for start in range(0, len(self.pixels), row):
            ours, theirs = self.pixels[start:start + row], other.pixels[start:start + row]
            if ours == theirs:
                continue
            far = [abs(a - b) > threshold for a, b in zip(ours, theirs)]
            changed += sum(map(any, zip(far[0::3], far[1::3], far[2::3])))
        return changed

    def differs_from(self, colour, tolerance=24):
        """Rows of flags: which pixels are further from the colour than the tolerance in some channel."""
        red, green, blue = colour
        return [[abs(self.pixels[i] - red) > tolerance or abs(self.pixels[i + 1] - green) > tolerance
                 or abs(self.pixels[i + 2] - blue) > tolerance
                 for i in range(y * self.width * 3, (y + 1) * self.width * 3, 3)] for y in range(self.height)]

    def extent(self, ground):
        """The box, inside this picture, of what is not the ground colour; None when nothing is."""
        flags = self.differs_from(ground)
        rows = [y for y, row in enumerate(flags) if any(row)]
        columns = [x for x in range(self.width) if any(row[x] for row in flags)]
        if not rows:
            return None
        return Box(columns[0], rows[0], columns[-1] - columns[0] + 1, rows[-1] - rows[0] + 1)

    def save(self, path):
        subprocess.run(["/usr/bin/convert", "-size", f"{self.width}x{self.height}", "-depth", "8", "rgb:-", str(path)],
                       input=self.pixels, check=True)


def vertical_shift(before, after, box, candidates):
    """By how many pixels the content of the box moved up between two pictures: the best of the candidates, and how far
    the two are apart there."""
    wanted = before.crop(box)
    distances = {shift: wanted.distance(after.crop(box.moved(0, -shift))) for shift in candidates}
    best = min(distances, key=distances.get)
    return best, distances[best]
