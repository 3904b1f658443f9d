// Compares two folders of pictures of the same screens, drawn by two renderers:
//
//   picturecompare FIRST SECOND
//
// Fails on a picture found in one folder only, on a picture of two sizes, and on any
// place where an element is drawn in one picture and not in the other, or elsewhere.
// What two rasterisers draw differently is let through: anti-aliasing, the weight and
// colour fringes of glyphs, an edge a pixel or two away, and lines up to three pixels
// thick (the software renderer rounds hairlines at a fractional zoom and drops some,
// and draws the text cursor wider). Each picture that differs is named with the boxes
// of its differences.
#include <QDir>
#include <QImage>
#include <QRect>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <thread>
#include <tuple>
#include <vector>

namespace {

// How far an edge may sit from its place in the other picture, in pixels.
constexpr int reach = 2;
// How far a brightness may stray beyond those the other picture has within reach:
// glyphs differ in weight, but over a flat background even a faint element (a label
// under a sheet's shade) is something one picture has and the other has not.
constexpr int shade = 32;
constexpr int flatShade = 12;
// A neighbourhood whose brightnesses span no more than this is flat.
constexpr int flat = 8;
// Pixels that differ this close together belong to one difference.
constexpr int link = 2;
// A difference no thicker than this either way is a line a rasteriser rounded.
constexpr int thinLine = 3;
// Fewer pixels than this are the noise of two rasterisers drawing one glyph.
constexpr int fewest = 16;

struct Difference
{
    QRect box;
    int pixels = 0;
};

struct Outcome
{
    QString problem; // why the picture could not be compared; empty when it was
    std::vector<Difference> differences;
};

// Whether `value` lies among the brightnesses `image` has within `reach` of (x, y),
// give or take `shade` (`flatShade` where they are flat).
bool explains(const QImage &image, int x, int y, int value)
{
    int low = 255, high = 0;
    for (int ny = std::max(0, y - reach); ny <= std::min(image.height() - 1, y + reach); ++ny) {
        const uchar *line = image.constScanLine(ny);
        for (int nx = std::max(0, x - reach); nx <= std::min(image.width() - 1, x + reach); ++nx) {
            low = std::min<int>(low, line[nx]);
            high = std::max<int>(high, line[nx]);
        }
    }
    const int slack = high - low <= flat ? flatShade : shade;
    return value >= low - slack && value <= high + slack;
}

// The pixels marked in `marked` (one byte per pixel, cleared on the way), in groups
// of pixels at most `link` apart.
std::vector<Difference> group(std::vector<char> &marked, int width, int height)
{
    std::vector<Difference> groups;
    std::vector<int> pending;
    for (int start = 0; start < width * height; ++start) {
        if (!marked[start])
            continue;
        Difference difference;
        marked[start] = 0;
        pending.push_back(start);
        while (!pending.empty()) {
            const int x = pending.back() % width, y = pending.back() / width;
            pending.pop_back();
            ++difference.pixels;
            difference.box |= QRect(x, y, 1, 1);
            for (int ny = std::max(0, y - link); ny <= std::min(height - 1, y + link); ++ny)
                for (int nx = std::max(0, x - link); nx <= std::min(width - 1, x + link); ++nx)
                    if (marked[ny * width + nx]) {
                        marked[ny * width + nx] = 0;
                        pending.push_back(ny * width + nx);
                    }
        }
        groups.push_back(std::move(difference));
    }
    return groups;
}

Outcome compare(const QString &firstPath, const QString &secondPath)
{
    const QImage picture(firstPath), other(secondPath);
    if (picture.isNull() || other.isNull())
        return {QStringLiteral("cannot be read"), {}};
    if (picture.size() != other.size())
        return {QStringLiteral("is %1x%2 in one folder, %3x%4 in the other")
                    .arg(picture.width())
                    .arg(picture.height())
                    .arg(other.width())
                    .arg(other.height()),
                {}};

    // Brightness only: the OpenGL path draws glyphs with coloured fringes where the
    // software renderer draws them grey.
    const QImage first = picture.convertToFormat(QImage::Format_Grayscale8);
    const QImage second = other.convertToFormat(QImage::Format_Grayscale8);
    const int width = first.width(), height = first.height();
    std::vector<char> marked(size_t(width) * height);
    for (int y = 0; y < height; ++y) {
        const uchar *a = first.constScanLine(y), *b = second.constScanLine(y);
        for (int x = 0; x < width; ++x) {
            // Each picture must be explained by the other: whichever side draws an
            // element alone, the other's background does not explain it.
            if (std::abs(a[x] - b[x]) > flatShade && !(explains(second, x, y, a[x]) && explains(first, x, y, b[x])))
                marked[size_t(y) * width + x] = 1;
        }
    }
    std::vector<Difference> differences = group(marked, width, height);
    std::erase_if(differences, [](const Difference &d) {
        return std::min(d.box.width(), d.box.height()) <= thinLine || d.pixels < fewest;
    });
    return {{}, std::move(differences)};
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: picturecompare FIRST SECOND\n");
        return 2;
    }
    const QDir first(QString::fromLocal8Bit(argv[1])), second(QString::fromLocal8Bit(argv[2]));
    const QStringList firstNames = first.entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name);
    const QStringList secondNames = second.entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name);

    int failures = 0;
    if (firstNames.isEmpty()) {
        ++failures;
        std::printf("no pictures in %s\n", qPrintable(first.path()));
    }
    for (const auto &[names, others, folder] :
         {std::tuple(firstNames, secondNames, second.path()), std::tuple(secondNames, firstNames, first.path())})
        for (const QString &name : names)
            if (!others.contains(name)) {
                ++failures;
                std::printf("%s: missing from %s\n", qPrintable(name), qPrintable(folder));
            }

    QStringList common;
    for (const QString &name : firstNames)
        if (secondNames.contains(name))
            common.append(name);
    std::vector<Outcome> outcomes(common.size());
    std::atomic<qsizetype> next = 0;
    std::vector<std::thread> workers;
    for (unsigned i = 0; i < std::max(1u, std::thread::hardware_concurrency()); ++i)
        workers.emplace_back([&] {
            for (qsizetype at = next++; at < common.size(); at = next++) {
                outcomes[at] = compare(first.filePath(common.at(at)), second.filePath(common.at(at)));
            }
        });
    for (std::thread &worker : workers)
        worker.join();

    for (qsizetype at = 0; at < common.size(); ++at) {
        const Outcome &outcome = outcomes[at];
        if (outcome.problem.isEmpty() && outcome.differences.empty())
            continue;
        ++failures;
        QStringList where;
        for (const Difference &d : outcome.differences)
            where.append(QStringLiteral("%1x%2 at (%3,%4)")
                             .arg(d.box.width())
                             .arg(d.box.height())
                             .arg(d.box.x())
                             .arg(d.box.y()));
        std::printf("%s: %s\n", qPrintable(common.at(at)),
                    qPrintable(outcome.problem.isEmpty()
                                   ? QStringLiteral("differs in ") + where.join(QStringLiteral(", "))
                                   : outcome.problem));
    }
    std::printf("%lld pictures compared, %d problems\n", static_cast<long long>(common.size()), failures);
    return failures == 0 ? 0 : 1;
}
