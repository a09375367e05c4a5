// Measures recognition on made posters and photos of them: how often it is right, how often wrong, and how long it
// takes.

#include "service/Recognizer.h"
#include "service/tools/MadePosters.h"
#include "service/tools/Photograph.h"

#include <opencv2/core/utility.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace
{

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

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

} // namespace

int main(int argc, char **argv)
{
    const int count = argc > 1 ? std::atoi(argv[1]) : 20;
    if (count < 1 || count > 100000) {
        std::fprintf(stderr, "usage: %s [NUMBER OF POSTERS]\n", argv[0]);
        return 2;
    }
    const char *saveFolder = std::getenv("SAVE");
    cv::setNumThreads(1);

    std::vector<MatchService::AdFeatures> ads;
    double indexing = 0;
    for (int poster = 0; poster < count; ++poster) {
        const cv::Mat picture = grey(Tools::madePoster(poster));
        const auto start = Clock::now();
        ads.push_back(MatchService::featuresOfAd(picture));
        indexing += secondsSince(start);
    }
    const auto start = Clock::now();
    const MatchService::Recognizer recognizer(std::move(ads));
    const double building = secondsSince(start);

    cv::RNG random(20);
    Tally hard, large;
    int falsePositives = 0;
    const int photos = std::max(200, std::min(count, 400));
    const int strangers = photos;
    std::vector<double> times;
    const auto query = [&](const cv::Mat &photo) {
        const cv::Mat upload = cv::imdecode(Tools::uploadOf(photo), cv::IMREAD_GRAYSCALE);
        const auto begin = Clock::now();
        const auto found = recognizer.recognize(upload);
        times.push_back(secondsSince(begin));
        return found;
    };
    for (int photo = 0; photo < photos; ++photo) {
        const int poster = photo % count;
        const double share = random.uniform(0.4, 0.9);
        const cv::Mat picture = hardPhoto(poster, share, random);
        if (saveFolder && photo < 12)
            cv::imwrite(std::string(saveFolder) + "/" + std::to_string(photo) + ".jpg", picture);
        const auto found = query(picture);
        hard.add(found, poster);
        if (share >= 0.6)
            large.add(found, poster);
    }
    for (int photo = 0; photo < strangers; ++photo)
        falsePositives += query(hardPhoto(1000000 + photo, random.uniform(0.4, 0.9), random)).has_value();

    std::sort(times.begin(), times.end());
    std::printf("posters                        %d\n", count);
    std::printf("photos                         %d of posters, %d of others\n", photos, strangers);
    std::printf("recall, hard photos            %.3f\n", double(hard.right) / hard.all);
    std::printf("recall, poster fills 60%% up    %.3f (%d photos)\n", double(large.right) / large.all, large.all);
    std::printf("wrong posters                  %d\n", hard.wrong);
    std::printf("false positives                %d (%.1f%%)\n", falsePositives, 100.0 * falsePositives / strangers);
    std::printf("query, one core                %.0f ms median, %.0f ms worst\n", 1000 * times[times.size() / 2],
                1000 * times.back());
    std::printf("start                          %.2f s indexing, %.2f s building the tree\n", indexing, building);
    return 0;
}
