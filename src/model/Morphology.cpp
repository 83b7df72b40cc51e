#include "model/Morphology.h"

#include "model/Children.h"
#include "model/MorphologyImage.h"
#include "model/Region.h"
#include "model/RegionsLink.h"

#include <algorithm>

namespace Planaria {

namespace {

constexpr auto table = "Morphology";

} // namespace

Morphology::Morphology() : data(table) {}

Morphology::Morphology(int id, DB *db, bool loadImages) : imagesLoaded(false), data(table, id, db)
{
    name_ = data.loadValue(1).toString();
    loadRegionsLinks(loadRegions());
    if (loadImages)
        this->loadImages();
    data.loadFinished();
}

Morphology::Morphology(const Morphology &other, bool keepIds) : data(other.data, keepIds)
{
    copy(other, keepIds);
}

Morphology::~Morphology()
{
    deleteAll();
}

Morphology &Morphology::operator=(const Morphology &other)
{
    if (this != &other) {
        deleteAll();
        data = other.data;
        copy(other, true);
    }
    return *this;
}

void Morphology::copy(const Morphology &other)
{
    if (this == &other)
        return;
    removeAll();
    copy(other, false);
}

void Morphology::referTo(int id, DB *db)
{
    deleteAll();
    imagesLoaded = true;
    data.referTo(id, db);
    name_ = data.loadValue(1).toString();
    data.loadFinished();
}

// --- Loading ---

QHash<int, Region *> Morphology::loadRegions()
{
    QHash<int, Region *> regionOfRow;
    data.loadReferences("Region");
    while (data.nextReference()) {
        auto *region = new Region(this, data);
        regions_.append(region);
        regionOfRow.insert(region->id(), region);
    }
    return regionOfRow;
}

void Morphology::loadRegionsLinks(const QHash<int, Region *> &regions)
{
    data.loadReferences("RegionsLink", "FromRegion", "Region");
    while (data.nextReference())
        links_.append(new RegionsLink(this, data, regions));
}

void Morphology::loadImages() const
{
    imagesLoaded = true;
    data.loadReferences("MorphologyImage");
    while (data.nextReference())
        images.append(new MorphologyImage(const_cast<Morphology *>(this), data));
}

void Morphology::checkImagesLoaded() const
{
    if (imagesLoaded)
        return;
    loadImages();
    data.loadFinished();
}

// --- Copying ---

void Morphology::copy(const Morphology &other, bool keepIds)
{
    name_ = other.name_;

    QHash<const Region *, Region *> copyOf;
    for (const Region *region : other.regions_) {
        auto *copied = new Region(*region, this, keepIds);
        regions_.append(copied);
        copyOf.insert(region, copied);
    }
    for (const RegionsLink *link : other.links_) {
        links_.append(new RegionsLink(*link, this, copyOf.value(link->from()),
                                      copyOf.value(link->to()), keepIds));
    }
    for (const MorphologyImage *image : other.getImages())
        images.append(new MorphologyImage(*image, this, keepIds));
    // All images of the source are here now: nothing is left to be read from the file.
    imagesLoaded = true;
}

// --- Members ---

Region *Morphology::addRegion(RegionType *type)
{
    auto *region = new Region(this, type);
    regions_.append(region);
    return region;
}

RegionsLink *Morphology::addRegionsLink(Region *from, Region *to, double dist, double ang,
                                        double ratio)
{
    auto *link = new RegionsLink(from, to, dist, ang, ratio);
    links_.append(link);
    return link;
}

template <typename Member> bool Morphology::removeMember(Member *member, QList<Member *> *members)
{
    if (!members->removeOne(member))
        return false;
    member->removeFromMorphology();
    data.removeReference(member);
    return true;
}

bool Morphology::removeRegion(Region *region)
{
    return removeMember(region, &regions_);
}

bool Morphology::removeRegionsLink(RegionsLink *link)
{
    return removeMember(link, &links_);
}

bool Morphology::removeImage(MorphologyImage *image)
{
    return removeMember(image, &images);
}

bool Morphology::removeImage(int index)
{
    return index >= 0 && index < images.size() && removeImage(images.at(index));
}

void Morphology::removeAll()
{
    while (!links_.isEmpty())
        removeRegionsLink(links_.last());
    while (!regions_.isEmpty())
        removeRegion(regions_.last());
    checkImagesLoaded();
    while (!images.isEmpty())
        removeImage(images.last());
}

void Morphology::deleteAll()
{
    qDeleteAll(std::exchange(regions_, {}));
    qDeleteAll(std::exchange(links_, {}));
    qDeleteAll(std::exchange(images, {}));
}

MorphologyImage *Morphology::addImage(const QByteArray &bytes)
{
    checkImagesLoaded();
    auto *image = new MorphologyImage(this, bytes);
    images.append(image);
    return image;
}

MorphologyImage *Morphology::getImage(int index) const
{
    return getImages().at(index);
}

int Morphology::nImages() const
{
    return static_cast<int>(getImages().size());
}

const QList<MorphologyImage *> &Morphology::getImages() const
{
    checkImagesLoaded();
    return images;
}

// --- The whole ---

bool Morphology::operator==(const Morphology &other) const
{
    return name_ == other.name_ && regions_.size() == other.regions_.size() &&
           links_.size() == other.links_.size() && haveEqualChildren(regions_, other.regions_) &&
           haveEqualChildren(links_, other.links_) &&
           haveEqualChildren(getImages(), other.getImages());
}

int Morphology::submit(DB *db)
{
    // Into another file, the worm takes its pictures along while their old file is still known.
    if (db != data.db())
        checkImagesLoaded();

    // A link to a region that is not there could only fail, and take all the others with it.
    QList<RegionsLink *> writableLinks;
    std::copy_if(links_.cbegin(), links_.cend(), std::back_inserter(writableLinks),
                 [](const RegionsLink *link) { return link->isComplete(); });

    const DBElementData::Values values{{"Name", name_}};
    if (imagesLoaded)
        return data.submit(db, {}, {}, values, regions_, writableLinks, images);
    return data.submit(db, {}, {}, values, regions_, writableLinks);
}

bool Morphology::erase()
{
    checkImagesLoaded();
    return data.erase({}, links_, regions_, images);
}

} // namespace Planaria
