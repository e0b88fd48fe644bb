#include "foundation/vector/XOgrImport.h"

#include "foundation/base/XTextStyle.h"
#include "foundation/reference/XGdalErrors.h"
#include "foundation/vector/XAttributeTable.h"
#include "foundation/vector/XOgrGeometry.h"
#include "foundation/vector/XOgrSource.h"
#include "foundation/vector/XOgrStyle.h"
#include "foundation/vector/XVectorFileInfo.h"
#include "foundation/vector/XVectorJob.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcText.h"

#include <gdal_priv.h>
#include <ogr_featurestyle.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace {

constexpr double kBytesPerObject = 200.0; // a guess, for formats that do not count theirs
constexpr std::size_t kKeptStyles = 1024;
constexpr std::size_t kKeptNames = 65536;

/// The system of a layer, empty when it has none.
XSpatialReference GetReference(OGRLayer& layer)
{
    XSpatialReference reference;
    const OGRSpatialReference* from = layer.GetSpatialRef();
    const char* const modern[] = {"FORMAT=WKT2_2019", nullptr};
    const char* const none[] = {nullptr};
    for (const char* const* form : {none, modern}) {
        char* wkt = nullptr;
        if (from && from->exportToWkt(&wkt, form) == OGRERR_NONE && wkt && *wkt &&
            reference.IsEmpty()) {
            reference.importFromWkt(wkt);
        }
        CPLFree(wkt);
    }
    return reference;
}

/// Whether the file has northing or latitude first.
bool IsNorthFirst(OGRLayer& layer)
{
    const OGRSpatialReference* from = layer.GetSpatialRef();
    if (!from || !(from->EPSGTreatsAsLatLong() || from->EPSGTreatsAsNorthingEasting()))
        return false;
    const std::vector<int>& mapping = from->GetDataAxisToSRSAxisMapping();
    return mapping.size() >= 2 && mapping[0] == 1 && mapping[1] == 2;
}

/// One file, walked through feature by feature.
class Walk
{
public:
    explicit Walk(XVectorJob& job) : m_job(job) {}

    bool Open(const char* const* drivers, XString& error)
    {
        if (!m_source.Open(m_job.GetPath(), drivers, error)) return false;
        std::error_code failure;
        const auto bytes = std::filesystem::file_size(m_job.GetPath().GetString(), failure);
        for (const XString& note : m_source.GetNotes())
            m_job.Note(note);
        m_guess = failure ? 1.0 : static_cast<double>(bytes) / kBytesPerObject + 1.0;
        const int count = m_source.Get()->GetLayerCount();
        for (int i = 0; i < count; ++i) {
            OGRLayer* layer = m_source.Get()->GetLayer(i);
            if (layer && layer->GetGeomType() != wkbNone) m_layers.push_back(layer);
        }
        if (m_layers.empty()) error = "It holds no shapes.";
        return !m_layers.empty();
    }

    const std::vector<OGRLayer*>& GetLayers() const { return m_layers; }
    const XOgrSource& GetSource() const { return m_source; }

    /// The column by whose values a drawing's objects are parted into layers; -1 for none.
    int GetKeyColumn(OGRLayer& layer) const
    {
        const XString driver = m_source.GetDriverName();
        const char* name = driver == "DXF" ? "Layer" : driver == "DGN" ? "Level" : nullptr;
        return name ? layer.GetLayerDefn()->GetFieldIndex(name) : -1;
    }

    /// The name of the layer that a feature goes to.
    XString GetLayerName(OGRLayer& layer, const OGRFeature* feature, int keyColumn) const
    {
        if (!feature || keyColumn < 0) return m_source.ToText(layer.GetName());
        if (m_source.GetDriverName() == "DGN") {
            return XfnFormat("Level %d", feature->GetFieldAsInteger(keyColumn));
        }
        return m_source.ToText(feature->GetFieldAsString(keyColumn));
    }

    /// Hands each feature of a layer that has a geometry to `visit` until it answers false.
    template <class Visit>
    bool Run(OGRLayer& layer, const Visit& visit)
    {
        const bool isDrawing = m_source.GetDriverName() == "DXF";
        const int sheet = isDrawing ? layer.GetLayerDefn()->GetFieldIndex("PaperSpace") : -1;
        const GIntBig count = layer.GetFeatureCount(FALSE);
        const double whole = count > 0 ? static_cast<double>(count) : m_guess;
        double done = 0.0;
        OGRLayer* from = &layer;
        OGRLayer* const bare = m_source.GetBareShapes();
        m_hasValues = true;
        from->ResetReading();
        while (!m_job.IsStopped()) {
            std::optional<XGdalErrors> unheard; // of records that the table does not have
            if (bare && m_hasValues) unheard.emplace();
            CPLErrorReset();
            const std::unique_ptr<OGRFeature> feature(from->GetNextFeature());
            const bool hasFailed = CPLGetLastErrorType() >= CE_Failure;
            unheard.reset();
            const bool isBehind = !feature || feature->GetFID() >= m_source.GetTableRows();
            if (bare && m_hasValues && isBehind) {
                m_hasValues = false;
                from = bare;
                if (from->SetNextByIndex(m_source.GetTableRows()) == OGRERR_NONE) continue;
            }
            if (!feature) return true;
            m_job.SetProgress(std::min(++done, whole), whole);
            if (sheet >= 0 && feature->GetFieldAsInteger(sheet) != 0) {
                m_job.Count("on paper sheets left out");
                continue;
            }
            ++m_read;
            std::unique_ptr<OGRGeometry> geometry(feature->StealGeometry());
            if (!geometry && hasFailed) {
                ++m_unread;
            } else if (!geometry) {
                m_job.Count("without a shape left out");
            } else if (!visit(*feature, *geometry)) {
                return false;
            }
        }
        return false;
    }

    bool HasValues() const { return m_hasValues; }   ///< the feature at hand comes with attributes
    long long GetRead() const { return m_read; }     ///< features of all layers
    long long GetUnread() const { return m_unread; } ///< of these, whose shape is damaged

private:
    XVectorJob& m_job;
    XOgrSource m_source;
    std::vector<OGRLayer*> m_layers;
    double m_guess = 1.0;
    bool m_hasValues = true;
    long long m_read = 0;
    long long m_unread = 0;
};

/// A layer that is being filled, and its table.
struct Target
{
    XvcLayer* layer = nullptr;
    std::shared_ptr<XAttributeTable> table;
};

/// Turns the features of one layer into objects.
class LayerImport
{
public:
    LayerImport(Walk& walk, OGRLayer& from, XvcBase& base, XVectorJob& job)
        : m_walk(walk), m_from(from), m_base(base), m_job(job), m_keyColumn(walk.GetKeyColumn(from))
    {
        ListColumns();
        if (m_keyColumn < 0) FindTarget(nullptr);
    }

    /// @param to  where the coordinates go; null for where they are
    bool Run(const OGRSpatialReference* to)
    {
        const OGRSpatialReference* own = m_from.GetSpatialRef();
        m_isNorthFirst = IsNorthFirst(m_from);
        if (to && own && !own->IsSame(to)) {
            m_transformation.reset(OGRCreateCoordinateTransformation(own, to));
        }
        const bool isDone =
            m_walk.Run(m_from, [&](const OGRFeature& feature, OGRGeometry& geometry) {
                return Take(feature, geometry);
            });
        for (auto& [name, target] : m_targets)
            Finish(target);
        return isDone;
    }

private:
    struct Column
    {
        int field;
        OGRFieldType type;
        XAttributeTable::Type kind;
    };

    struct Hash : std::hash<std::string_view> // finds without a copy of the key
    {
        using is_transparent = void;
    };

    void ListColumns()
    {
        const OGRFeatureDefn& definition = *m_from.GetLayerDefn();
        for (int i = 0; i < definition.GetFieldCount(); ++i) {
            const OGRFieldType type = definition.GetFieldDefn(i)->GetType();
            if (type == OFTBinary) continue;
            const bool isWhole = type == OFTInteger || type == OFTInteger64;
            m_columns.push_back({i, type,
                                 isWhole           ? XAttributeTable::kInteger
                                 : type == OFTReal ? XAttributeTable::kReal
                                                   : XAttributeTable::kText});
        }
        // the one that is called so, else one whose name says so
        for (const char* wanted : {"name", "label", "title", "text"}) {
            if (m_nameField < 0) m_nameField = definition.GetFieldIndex(wanted);
        }
        for (const Column& column : m_columns) {
            XString name = definition.GetFieldDefn(column.field)->GetNameRef();
            const bool isName = name.MakeLower().Find("name") >= 0;
            if (m_nameField < 0 && column.type == OFTString && isName) m_nameField = column.field;
        }
    }

    Target& FindTarget(const OGRFeature* feature)
    {
        const XString name = m_walk.GetLayerName(m_from, feature, m_keyColumn);
        Target& target = m_targets[name];
        if (target.layer) return target;
        target.layer = new XvcLayer;
        m_base.AddTail(target.layer);
        target.layer->SetName(name);
        target.table = std::make_shared<XAttributeTable>();
        for (const Column& column : m_columns) {
            const OGRFieldDefn& field = *m_from.GetLayerDefn()->GetFieldDefn(column.field);
            target.table->AddColumn(m_walk.GetSource().ToText(field.GetNameRef()), column.kind);
        }
        return target;
    }

    bool Take(const OGRFeature& feature, OGRGeometry& geometry)
    {
        if (m_isNorthFirst) geometry.swapXY();
        if (m_transformation && geometry.transform(m_transformation.get()) != OGRERR_NONE) {
            m_job.Count("outside the coordinate system of the others left out");
            return true;
        }
        const XOgrStyle& style = FindStyle(feature);
        std::unique_ptr<XvcObj> object = MakeText(feature, geometry, style);
        if (!object) {
            object = XfnMakeFromOgr(geometry);
            if (object) style.Apply(*object);
        }
        if (!object) {
            m_job.Count("without a shape left out");
            return true;
        }
        if (m_nameField >= 0 && m_walk.HasValues() && feature.IsFieldSetAndNotNull(m_nameField)) {
            object->SetName(FindName(feature.GetFieldAsString(m_nameField)));
        }
        object->CalcRange();
        Target& target = m_keyColumn < 0 ? m_targets.begin()->second : FindTarget(&feature);
        AddRow(*target.table, feature);
        XvcObj& added = *object;
        target.layer->AddTail(object.release());
        return m_job.Accept(added);
    }

    void AddRow(XAttributeTable& table, const OGRFeature& feature) const
    {
        table.AddRow();
        if (!m_walk.HasValues()) return;
        for (int i = 0; i < static_cast<int>(m_columns.size()); ++i) {
            const Column& column = m_columns[static_cast<std::size_t>(i)];
            if (!feature.IsFieldSetAndNotNull(column.field)) continue;
            if (column.kind == XAttributeTable::kInteger) {
                table.SetInteger(i, feature.GetFieldAsInteger64(column.field));
            } else if (column.kind == XAttributeTable::kReal) {
                table.SetReal(i, feature.GetFieldAsDouble(column.field));
            } else if (const char* bytes =
                           const_cast<OGRFeature&>(feature).GetFieldAsString(column.field);
                       m_walk.GetSource().IsUtf8()) {
                table.SetText(i, bytes, std::strlen(bytes));
            } else {
                const XString text = m_walk.GetSource().ToUtf8(bytes);
                table.SetText(i, text, static_cast<std::size_t>(text.GetLength()));
            }
        }
    }

    XString FindName(const char* bytes)
    {
        if (m_names.size() > kKeptNames) m_names.clear();
        const auto found = m_names.find(std::string_view(bytes));
        if (found != m_names.end()) return found->second;
        return m_names.emplace(bytes, m_walk.GetSource().ToText(bytes)).first->second;
    }

    const XOgrStyle& FindStyle(const OGRFeature& feature)
    {
        const char* text = const_cast<OGRFeature&>(feature).GetStyleString();
        if (!text || !*text) return m_noStyle;
        std::string resolved = text;
        if (*text == '@') {
            OGRStyleMgr manager(m_from.GetStyleTable());
            const char* found = manager.InitFromFeature(&const_cast<OGRFeature&>(feature));
            resolved = found ? found : "";
        }
        if (m_styles.size() > kKeptStyles) m_styles.clear();
        const auto [found, isNew] = m_styles.try_emplace(resolved);
        if (isNew) found->second = XOgrStyle::Parse(resolved);
        return found->second;
    }

    /// A point that is there for its label.
    std::unique_ptr<XvcObj> MakeText(const OGRFeature& feature, const OGRGeometry& geometry,
                                     const XOgrStyle& style) const
    {
        const XOgrStyle::Label& label = style.label;
        if (label.text.empty() || style.hasSymbol || geometry.IsEmpty() ||
            wkbFlatten(geometry.getGeometryType()) != wkbPoint) {
            return nullptr;
        }
        const OGRPoint& at = *geometry.toPoint();
        auto text = std::make_unique<XvcText>();
        text->SetText(FillIn(label.text, feature));
        text->SetPosition(at.getX(), at.getY(), at.getZ());
        text->SetFontSize(label.size);
        text->SetAngle(label.angleDeg);
        text->SetTextAlign(label.align);
        text->SetTextColor(label.color);
        text->SetLineColor(label.color);
        tagXTextStyle look;
        if (!label.font.empty()) look.font.SetFaceName(label.font.c_str());
        look.font.weight = label.isBold ? 700 : 400;
        look.font.italic = label.isItalic;
        look.font.underline = label.isUnderlined;
        text->SetTextStyle(look);
        return text;
    }

    /// A label with the values of the columns that it names in braces.
    XString FillIn(const std::string& label, const OGRFeature& feature) const
    {
        std::string filled;
        for (std::size_t at = 0; at < label.size();) {
            const std::size_t end = label[at] == '{' ? label.find('}', at) : std::string::npos;
            const int field =
                end == std::string::npos
                    ? -1
                    : feature.GetFieldIndex(label.substr(at + 1, end - at - 1).c_str());
            if (field < 0) {
                filled += label[at++];
                continue;
            }
            filled += feature.GetFieldAsString(field);
            at = end + 1;
        }
        return m_walk.GetSource().ToText(filled.c_str());
    }

    void Finish(Target& target)
    {
        if (target.table->GetNumOfColumns() == 0) return;
        target.table->Seal();
        target.layer->SetAttributes(target.table);
        int row = 0; // each object came with one
        for (__POSITION* pos = target.layer->GetHeadPosition(); pos; ++row) {
            auto* object = static_cast<XvcObj*>(target.layer->GetNext(pos));
            XfnSetRecords(*object, target.table->GetRecord(row));
        }
    }

    Walk& m_walk;
    OGRLayer& m_from;
    XvcBase& m_base;
    XVectorJob& m_job;
    const int m_keyColumn;
    int m_nameField = -1;
    bool m_isNorthFirst = false;
    std::unique_ptr<OGRCoordinateTransformation> m_transformation;
    std::vector<Column> m_columns;
    std::map<XString, Target> m_targets;
    const XOgrStyle m_noStyle;
    std::unordered_map<std::string, XOgrStyle> m_styles;
    std::unordered_map<std::string, XString, Hash, std::equal_to<>> m_names;
};

int CountObjects(const XvcBase& base)
{
    int count = 0;
    for (__POSITION* pos = base.GetHeadPosition(); pos;)
        count += static_cast<const XvcLayer*>(base.GetNext(pos))->GetCount();
    return count;
}

void AddKind(OGRwkbGeometryType type, tagXVectorLayerInfo& info)
{
    const OGRwkbGeometryType flat = wkbFlatten(OGR_GT_GetLinear(type));
    if (wkbHasZ(type)) info.hasHeights = 1;
    if (flat == wkbPoint || flat == wkbMultiPoint) {
        info.hasPoints = 1;
    } else if (flat == wkbLineString || flat == wkbMultiLineString) {
        info.hasLines = 1;
    } else if (OGR_GT_IsSubClassOf(flat, wkbSurface) || flat == wkbMultiPolygon ||
               flat == wkbPolyhedralSurface || flat == wkbTIN) {
        info.hasAreas = 1;
    } else if (flat != wkbUnknown) {
        info.hasOthers = 1;
    }
}

/// Reads a layer through, since its format keeps no summary.
bool Survey(Walk& walk, OGRLayer& from, std::vector<tagXVectorLayerInfo>& infos)
{
    const int keyColumn = walk.GetKeyColumn(from);
    const bool isNorthFirst = IsNorthFirst(from);
    std::map<XString, std::size_t> places;
    return walk.Run(from, [&](const OGRFeature& feature, OGRGeometry& geometry) {
        if (geometry.IsEmpty()) return true;
        const XString name = walk.GetLayerName(from, &feature, keyColumn);
        const auto [place, isNew] = places.try_emplace(name, infos.size());
        if (isNew) {
            infos.emplace_back();
            infos.back().name = name;
        }
        tagXVectorLayerInfo& info = infos[place->second];
        if (isNorthFirst) geometry.swapXY();
        OGREnvelope3D box;
        geometry.getEnvelope(&box);
        AddKind(geometry.getGeometryType(), info);
        ++info.objects;
        info.range.Add(box.MinX, box.MinY, box.MinZ);
        info.range.Add(box.MaxX, box.MaxY, box.MaxZ);
        return true;
    });
}

/// What a layer's format tells without reading it through; false when it does not.
bool ReadSummary(Walk& walk, OGRLayer& from, std::vector<tagXVectorLayerInfo>& infos)
{
    if (walk.GetKeyColumn(from) >= 0 || IsNorthFirst(from) ||
        !from.TestCapability(OLCFastFeatureCount) || !from.TestCapability(OLCFastGetExtent)) {
        return false;
    }
    tagXVectorLayerInfo info;
    OGREnvelope box;
    info.name = walk.GetLayerName(from, nullptr, -1);
    info.objects = from.GetFeatureCount(TRUE);
    AddKind(from.GetGeomType(), info);
    if (from.GetExtent(&box, FALSE) == OGRERR_NONE) {
        info.range.Add(box.MinX, box.MinY, 0.0);
        info.range.Add(box.MaxX, box.MaxY, 0.0);
    }
    infos.push_back(std::move(info));
    return true;
}

int Refuse(const XString& damage, XString& error)
{
    error = (damage.IsEmpty() ? XString("It is damaged or cut short.") : damage) +
            " Try another copy of it.";
    return 0;
}

} // namespace

int XfnImportOgr(XVectorJob& job, const char* const* drivers, XvcBase& base, XString& error)
{
    const XGdalErrors errors;
    Walk walk(job);
    if (!walk.Open(drivers, error)) return 0;
    const OGRSpatialReference* common = nullptr;
    for (OGRLayer* layer : walk.GetLayers()) {
        const XSpatialReference reference = GetReference(*layer);
        if (base.GetSR()->IsEmpty() && !reference.IsEmpty()) {
            base.SetSR(&reference);
            common = layer->GetSpatialRef();
        }
        if (!LayerImport(walk, *layer, base, job).Run(common)) return 0;
    }
    const XString damage = XfnTellDamage(errors, job.GetPath());
    const bool isDamaged = !damage.IsEmpty() || walk.GetUnread() > 0;
    if (isDamaged && CountObjects(base) == 0) return Refuse(damage, error);
    if (walk.GetUnread() > 0)
        job.Note(XfnFormat("%I64d of %I64d objects could be read: the file is damaged or cut "
                           "short.",
                           walk.GetRead() - walk.GetUnread(), walk.GetRead()));
    else if (isDamaged)
        job.Note("A part of it could not be read. " + damage);
    return 1;
}

int XfnGetOgrInfo(XVectorJob& job, const char* const* drivers, tagXVectorFileInfo& info,
                  XString& error)
{
    const XGdalErrors errors;
    Walk walk(job);
    if (!walk.Open(drivers, error)) return 0;
    info.format = walk.GetSource().GetDriverName();
    for (OGRLayer* layer : walk.GetLayers()) {
        if (info.reference.IsEmpty()) info.reference = GetReference(*layer);
        const std::size_t begin = info.layers.size();
        if (!ReadSummary(walk, *layer, info.layers) && !Survey(walk, *layer, info.layers)) return 0;
        for (std::size_t i = begin; i < info.layers.size(); ++i) {
            tagXVectorLayerInfo& made = info.layers[i];
            for (int c = 0; c < layer->GetLayerDefn()->GetFieldCount(); ++c) {
                const OGRFieldDefn& field = *layer->GetLayerDefn()->GetFieldDefn(c);
                if (field.GetType() == OFTBinary) continue;
                made.columns.push_back(walk.GetSource().ToText(field.GetNameRef()));
            }
            info.objects += made.objects;
            info.range.Add(made.range);
        }
    }
    const XString damage = XfnTellDamage(errors, job.GetPath());
    if (info.objects == 0 && !damage.IsEmpty()) return Refuse(damage, error);
    info.reference.SetCoordType(info.reference.IsEmpty() ? 2 : 3);
    return 1;
}

int XfnIsOgrFile(const XString& path)
{
    XfnPrepareGdal();
    const XGdalErrors errors;
    return GDALIdentifyDriverEx(path, GDAL_OF_VECTOR, XOgrSource::GetLocalDrivers(), nullptr) !=
                   nullptr
               ? 1
               : 0;
}

std::vector<XString> XfnGetOgrExtensions()
{
    XfnPrepareGdal();
    std::vector<XString> extensions;
    for (const char* const* name = XOgrSource::GetLocalDrivers(); *name; ++name) {
        GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(*name);
        const char* list = driver ? driver->GetMetadataItem(GDAL_DMD_EXTENSIONS) : nullptr;
        char** words = CSLTokenizeString2(list ? list : "", " .", 0);
        for (int i = 0; i < CSLCount(words); ++i) {
            XString word = words[i];
            word.MakeLower();
            if (std::find(extensions.begin(), extensions.end(), word) == extensions.end()) {
                extensions.push_back(word);
            }
        }
        CSLDestroy(words);
    }
    return extensions;
}
