#include "Peer.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

void makeUpload(const PeerJob &job, std::vector<unsigned char> &upload)
{
    const cv::Mat bytes(1, int(job.size), CV_8U, const_cast<unsigned char *>(job.bytes));
    cv::Mat grey = cv::imdecode(bytes, cv::IMREAD_REDUCED_GRAYSCALE_8);
    if (grey.cols < job.width || grey.rows < job.height)
        grey = cv::imdecode(bytes, cv::IMREAD_REDUCED_GRAYSCALE_4);
    cv::Mat scaled;
    cv::resize(grey, scaled, {job.width, job.height}, 0, 0, cv::INTER_AREA);
    cv::imencode(".jpg", scaled, upload, {cv::IMWRITE_JPEG_QUALITY, 0});
}
