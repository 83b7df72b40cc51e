#pragma once

#include "db/DBElementData.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

namespace Planaria {

class MorphologyImage;
class Region;
class RegionsLink;
class RegionType;

/// A worm shape: a named graph of body regions, with pictures.
///
/// It owns regions, links and images. The order of the regions is part of the shape: the drawing
/// starts at the first, and worms are compared position by position. Pictures stay in the file
/// until they are asked for.
///
/// What is removed waits for the next submit(), which erases it; until then the file is untouched.
class Morphology final : public DBElement
{
public:
    Morphology();
    Morphology(int id, DB *db, bool loadImages);
    /// A deep copy: with @p keepIds of the same rows, without a new element.
    Morphology(const Morphology &other, bool keepIds);
    ~Morphology() override;

    Morphology(const Morphology &) = delete;
    /// Replaces content and identity. What is replaced stays in the file; what waited to be erased
    /// still does.
    Morphology &operator=(const Morphology &other);
    /// Replaces the content and keeps the identity: the old members are erased at the next submit.
    void copy(const Morphology &other);
    /// Replaces content and identity by those of a stored worm, of which no more than the name is
    /// read. A submit to @p db leaves it as it is.
    void referTo(int id, DB *db);

    const QString &name() const { return name_; }
    void setName(const QString &name) { name_ = name; }
    const QList<Region *> &regions() const { return regions_; }
    const QList<RegionsLink *> &links() const { return links_; }
    /// What waits to be erased; for looking only.
    const DBElementData &record() const { return data; }

    Region *addRegion(RegionType *type);
    /// Links two regions of this morphology. @param ang radians @param dist scene units
    RegionsLink *addRegionsLink(Region *from, Region *to, double dist, double ang, double ratio);
    /// False where @p region is not of this morphology; the same for links and images.
    bool removeRegion(Region *region);
    bool removeRegionsLink(RegionsLink *link);
    bool removeImage(MorphologyImage *image);
    bool removeImage(int index);
    void removeAll();

    // The pictures are read from the file at the first of these calls.

    MorphologyImage *addImage(const QByteArray &bytes);
    MorphologyImage *getImage(int index) const;
    int nImages() const;
    const QList<MorphologyImage *> &getImages() const;

    /// Compares names, regions, the numbers of the links, and pictures, each in order. Which
    /// regions the links join is not compared.
    bool operator==(const Morphology &other) const;

    int id() const override { return data.id(); }
    int submit(DB *db) override;
    bool erase() override;

private:
    QHash<int, Region *> loadRegions();
    void loadRegionsLinks(const QHash<int, Region *> &regions);
    void loadImages() const;
    void checkImagesLoaded() const;

    void copy(const Morphology &other, bool keepIds);
    /// Deletes all members, and leaves their rows in the file.
    void deleteAll();

    template <typename Member> bool removeMember(Member *member, QList<Member *> *members);

    QString name_;
    QList<Region *> regions_;
    QList<RegionsLink *> links_;
    mutable QList<MorphologyImage *> images;
    mutable bool imagesLoaded = true;
    mutable DBElementData data;
};

} // namespace Planaria
