#pragma once

#include "db/DBElementData.h"

#include <QString>

namespace Planaria {

/// Where an experiment was told.
class Publication final : public DBElement
{
public:
    /// Of the current year.
    Publication();
    Publication(int id, DB *db);
    /// With @p keepIds of the same row, without a new element.
    Publication(const Publication &other, bool keepIds);

    Publication(const Publication &) = delete;
    /// Replaces content and identity.
    Publication &operator=(const Publication &other) = default;
    /// Replaces the content and keeps the identity.
    void copy(const Publication &other);
    /// Replaces content and identity by those of a stored publication, of which no more than the
    /// title is read. A submit to @p db leaves it as it is.
    void referTo(int id, DB *db);

    [[nodiscard]] const QString &title() const { return title_; }
    [[nodiscard]] const QString &url() const { return url_; }
    [[nodiscard]] int year() const { return year_; }
    void setTitle(const QString &title) { title_ = title; }
    void setUrl(const QString &url) { url_ = url; }
    void setYear(int year) { year_ = year; }
    [[nodiscard]] const DBElementData &record() const { return data; }

    /// Compares title, address and year.
    bool operator==(const Publication &other) const;

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    bool erase() override;

private:
    QString title_;
    QString url_;
    int year_ = 0;
    DBElementData data;
};

} // namespace Planaria
