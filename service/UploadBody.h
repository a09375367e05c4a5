#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QString>

namespace MatchService
{

/// A photo upload taken apart, or why it is none.
struct UploadBody {
    QHash<QByteArray, QByteArray> fields;
    QByteArray photo;
    /// Null when the body is an upload.
    QString fault;
};

/// Reads an upload exactly as the SDK writes it. Its multipart form is irregular: the body opens with a line end, the
/// file part's Content-Type stands on the same line as its Content-Disposition, and the last boundary is an ordinary
/// one. Any other body, a regular one included, is a fault.
UploadBody readUploadBody(const QByteArray &contentType, const QByteArray &body);

} // namespace MatchService
