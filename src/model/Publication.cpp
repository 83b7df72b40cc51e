#include "model/Publication.h"

#include <QDate>

namespace Planaria {

namespace {

constexpr auto table = "Publication";

} // namespace

Publication::Publication() : year_(QDate::currentDate().year()), data(table) {}

Publication::Publication(int id, DB *db) : data(table, id, db)
{
    title_ = data.loadValue(1).toString();
    url_ = data.loadValue(2).toString();
    year_ = data.loadValue(3).toInt();
    data.loadFinished();
}

Publication::Publication(const Publication &other, bool keepIds) : data(other.data, keepIds)
{
    copy(other);
}

void Publication::copy(const Publication &other)
{
    title_ = other.title_;
    url_ = other.url_;
    year_ = other.year_;
}

void Publication::referTo(int id, DB *db)
{
    data.referTo(id, db);
    title_ = data.loadValue(1).toString();
    data.loadFinished();
}

bool Publication::operator==(const Publication &other) const
{
    return title_ == other.title_ && url_ == other.url_ && year_ == other.year_;
}

int Publication::submit(DB *db)
{
    return data.submit(db,
                       DBElementData::Values{{"Title", title_}, {"URL", url_}, {"Year", year_}});
}

bool Publication::erase()
{
    return data.erase();
}

} // namespace Planaria
