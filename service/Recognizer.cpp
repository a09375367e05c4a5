#include "service/Recognizer.h"

#include "service/Verification.h"

#include <opencv2/flann.hpp>

#include <algorithm>

namespace MatchService
{

namespace
{

constexpr int neighbours = 5;
constexpr int leafChecks = 64;
constexpr int trees = 1;
constexpr float voteRatio = 0.85F;
constexpr std::size_t shortlistLength = 8;

using Distance = cvflann::L2<unsigned char>;
using Tree = cv::flann::GenericIndex<Distance>;

} // namespace

class Recognizer::Index
{
public:
    explicit Index(const std::vector<AdFeatures> &ads);

    std::vector<std::size_t> shortlist(const Features &photo) const;

private:
    void addVote(const float *distances, const int *rows, std::vector<float> &votes) const;

    cv::Mat m_descriptors;
    std::vector<int> m_adOfRow;
    std::size_t m_adCount;
    std::unique_ptr<Tree> m_tree;
};

Recognizer::Index::Index(const std::vector<AdFeatures> &ads)
    : m_adCount(ads.size())
{
    for (std::size_t ad = 0; ad < ads.size(); ++ad) {
        m_descriptors.push_back(ads[ad].features.descriptors);
        m_adOfRow.insert(m_adOfRow.end(), ads[ad].features.points.size(), int(ad));
    }
    if (m_descriptors.rows < neighbours)
        return;
    cvflann::seed_random(1);
    m_tree = std::make_unique<Tree>(m_descriptors, cvflann::KDTreeIndexParams(trees));
}

std::vector<std::size_t> Recognizer::Index::shortlist(const Features &photo) const
{
    if (!m_tree || photo.points.empty())
        return {};
    cv::Mat rows(photo.descriptors.rows, neighbours, CV_32S);
    cv::Mat distances(photo.descriptors.rows, neighbours, CV_32F);
    m_tree->knnSearch(photo.descriptors, rows, distances, neighbours, cvflann::SearchParams(leafChecks));

    std::vector<float> votes(m_adCount, 0);
    for (int row = 0; row < rows.rows; ++row)
        addVote(distances.ptr<float>(row), rows.ptr<int>(row), votes);

    std::vector<std::size_t> ads;
    for (std::size_t ad = 0; ad < votes.size(); ++ad) {
        if (votes[ad] > 0)
            ads.push_back(ad);
    }
    const std::size_t length = std::min(shortlistLength, ads.size());
    std::partial_sort(ads.begin(), ads.begin() + std::ptrdiff_t(length), ads.end(),
                      [&](std::size_t a, std::size_t b) { return votes[a] > votes[b]; });
    ads.resize(length);
    return ads;
}

// A feature votes for the ad of its nearest neighbour when no other ad has one nearly as near.
void Recognizer::Index::addVote(const float *distances, const int *rows, std::vector<float> &votes) const
{
    const int ad = m_adOfRow[std::size_t(rows[0])];
    int other = 1;
    while (other < neighbours - 1 && m_adOfRow[std::size_t(rows[other])] == ad)
        ++other;
    if (distances[0] < voteRatio * voteRatio * distances[other])
        votes[std::size_t(ad)] += 1;
}

Recognizer::Recognizer(std::vector<AdFeatures> ads)
    : m_ads(std::move(ads))
    , m_index(std::make_unique<Index>(m_ads))
{
}

Recognizer::~Recognizer() = default;

std::optional<Recognition> Recognizer::recognize(const cv::Mat &grey) const
{
    if (grey.empty())
        return std::nullopt;
    const cv::Mat photo = preparedPhoto(grey);
    const Features features = featuresOfPhoto(photo);
    std::optional<Recognition> best;
    for (const std::size_t ad : m_index->shortlist(features)) {
        const auto evidence = evidenceFor(m_ads[ad], photo, features);
        if (!evidence || !evidence->isEnough() || (best && best->inliers >= evidence->inliers))
            continue;
        best = Recognition{ad, evidence->inliers, evidence->correlation, evidence->coverage};
        if (evidence->isBeyondDoubt())
            break;
    }
    return best;
}

} // namespace MatchService
