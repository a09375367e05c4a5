// Measures recognition on made posters and photos of them: how often it is right, how often wrong, and how long it
// takes.

#include "service/FeatureCache.h"
#include "service/Recognizer.h"
#include "service/tools/MadePosters.h"
#include "service/tools/Photograph.h"

#include <opencv2/core/utility.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <optional>

namespace
{

constexpr int fewestPhotos = 400;
constexpr int firstStranger = 1000000;

cv::Mat grey(const cv::Mat &colour)
{
    cv::Mat result;
    cv::cvtColor(colour, result, cv::COLOR_BGR2GRAY);
    return result;
}

Tools::PhotoConditions hardConditions(double share, cv::RNG &random)
{
    Tools::PhotoConditions conditions;
    conditions.size = {960, 1280};
    conditions.tilt = random.uniform(0.0, 35.0);
    conditions.tiltDirection = random.uniform(0.0, 360.0);
    conditions.roll = random.uniform(-20.0, 20.0);
    conditions.share = share;
    conditions.offsetX = random.uniform(-0.5, 0.5) * (1 - share);
    conditions.offsetY = random.uniform(-0.1, 0.1);
    conditions.blur = random.uniform(0.5, 3.0);
    conditions.shake = random.uniform(0, 3) == 0 ? random.uniform(3.0, 9.0) : 0;
    conditions.shakeDirection = random.uniform(0.0, 180.0);
    conditions.noise = random.uniform(3.0, 14.0);
    conditions.darkestSide = random.uniform(0.45, 1.0);
    conditions.lightDirection = random.uniform(0.0, 360.0);
    conditions.exposure = random.uniform(0.75, 1.25);
    return conditions;
}

cv::Mat hardPhoto(int poster, double share, cv::RNG &random)
{
    const cv::Mat print = Tools::madePoster(poster);
    Tools::Scene scene = Tools::sceneWith(print, Tools::madeGround(random.uniform(0, 64), {1400, 1400}), 1.0);
    if (random.uniform(0, 2) == 0)
        Tools::coverPartly(scene.picture, scene.print, random.uniform(0.03, 0.2), random);
    Tools::PhotoConditions conditions = hardConditions(share, random);
    if (print.cols > print.rows)
        std::swap(conditions.size.width, conditions.size.height);
    return Tools::photograph(scene, conditions, random);
}

struct Tally {
    int right = 0;
    int wrong = 0;
    int all = 0;

    void add(const std::optional<MatchService::Recognition> &found, int expected)
    {
        ++all;
        right += found && int(found->ad) == expected;
        wrong += found && int(found->ad) != expected;
    }
};

/// Processor time of this thread; other programs on the machine do not count.
double processorSeconds()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + 1e-9 * double(time.tv_nsec);
}

class Queries
{
public:
    explicit Queries(const MatchService::Recognizer &recognizer)
        : m_recognizer(recognizer)
    {
    }

    std::optional<MatchService::Recognition> run(const cv::Mat &photo)
    {
        const cv::Mat upload = cv::imdecode(Tools::uploadOf(photo), cv::IMREAD_GRAYSCALE);
        const double start = processorSeconds();
        const auto found = m_recognizer.recognize(upload);
        m_times.push_back(processorSeconds() - start);
        return found;
    }

    double timeAt(double share)
    {
        std::sort(m_times.begin(), m_times.end());
        return 1000 * m_times[std::size_t(share * double(m_times.size() - 1))];
    }

private:
    const MatchService::Recognizer &m_recognizer;
    std::vector<double> m_times;
};

struct Start {
    double withoutCache = 0;
    double withCache = 0;
};

// A number stands for the picture's bytes: the posters exist in no file.
QByteArray keyOf(int poster)
{
    return QByteArray::number(poster);
}

std::unique_ptr<MatchService::Recognizer> started(int count, Start &start)
{
    const QTemporaryDir folder;
    const MatchService::FeatureCache cache(folder.path());
    for (int poster = 0; poster < count; ++poster) {
        const cv::Mat picture = grey(Tools::madePoster(poster));
        const double begin = processorSeconds();
        cache.store(keyOf(poster), MatchService::featuresOfAd(picture));
        start.withoutCache += processorSeconds() - begin;
    }
    const double begin = processorSeconds();
    std::vector<MatchService::AdFeatures> ads;
    for (int poster = 0; poster < count; ++poster)
        ads.push_back(cache.find(keyOf(poster)).value());
    auto recognizer = std::make_unique<MatchService::Recognizer>(std::move(ads));
    start.withCache = processorSeconds() - begin;
    start.withoutCache += start.withCache;
    return recognizer;
}

} // namespace

int main(int argc, char **argv)
{
    const int count = argc > 1 ? std::atoi(argv[1]) : 20;
    if (argc > 2 || count < 1 || count > 100000) {
        std::fprintf(stderr, "usage: %s [NUMBER OF POSTERS]\n", argv[0]);
        return 2;
    }
    cv::setNumThreads(1);
    Start start;
    const auto recognizer = started(count, start);
    Queries queries(*recognizer);

    cv::RNG random(20);
    Tally hard;
    Tally large;
    const int photos = std::max(fewestPhotos, count);
    for (int photo = 0; photo < photos; ++photo) {
        const int poster = photo % count;
        const double share = random.uniform(0.4, 0.9);
        const auto found = queries.run(hardPhoto(poster, share, random));
        hard.add(found, poster);
        if (share >= 0.6)
            large.add(found, poster);
    }
    int falsePositives = 0;
    for (int photo = 0; photo < fewestPhotos; ++photo)
        falsePositives += queries.run(hardPhoto(firstStranger + photo, random.uniform(0.4, 0.9), random)).has_value();

    std::printf("posters                          %d\n", count);
    std::printf("photos                           %d of posters, %d of others\n", photos, fewestPhotos);
    std::printf("recall, hard photos              %.3f\n", double(hard.right) / hard.all);
    std::printf("recall, poster fills 60%% or more %.3f (%d photos)\n", double(large.right) / large.all, large.all);
    std::printf("wrong posters                    %d\n", hard.wrong);
    std::printf("false positives                  %d (%.1f%%)\n", falsePositives,
                100.0 * falsePositives / fewestPhotos);
    std::printf("time per query, one core         %.0f ms median, %.0f ms at most\n", queries.timeAt(0.5),
                queries.timeAt(1));
    std::printf("start without cache              %.2f s\n", start.withoutCache);
    std::printf("start with cache                 %.2f s\n", start.withCache);
    return 0;
}
