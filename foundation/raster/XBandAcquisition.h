#pragma once

#include "foundation/base/XSentinels.h"
#include "foundation/base/XString.h"
#include "foundation/base/XVector3.h"

/// How a band was taken. The values travel with the band; kXNotSet is a number that is not known.
/// Plain data: no lock.
class XBandAcquisition
{
public:
    const XString& GetBandDate() const { return m_bandDate; }
    void SetBandDate(const XString& date) { m_bandDate = date; }
    int GetBandSensor() const { return m_bandSensor; } ///< a host's own sensor number
    void SetBandSensor(int sensor) { m_bandSensor = sensor; }
    const XString& GetBandSensorName() const { return m_bandSensorName; }
    void SetBandSensorName(const XString& name) { m_bandSensorName = name; }
    double GetCenterX() const { return m_centerX; }
    void SetCenterX(double x) { m_centerX = x; }
    double GetCenterY() const { return m_centerY; }
    void SetCenterY(double y) { m_centerY = y; }
    double GetCellSize() const { return m_cellSize; }
    void SetCellSize(double size) { m_cellSize = size; }
    double GetGain() const { return m_gain; }
    void SetGain(double gain) { m_gain = gain; }
    double GetBias() const { return m_bias; }
    void SetBias(double bias) { m_bias = bias; }
    double GetSunAzimuth() const { return m_sunAzimuth; } ///< degrees
    void SetSunAzimuth(double degrees) { m_sunAzimuth = degrees; }
    double GetSunElevation() const { return m_sunElevation; } ///< degrees
    void SetSunElevation(double degrees) { m_sunElevation = degrees; }
    double GetIncidenceAngle() const { return m_incidenceAngle; }
    void SetIncidenceAngle(double degrees) { m_incidenceAngle = degrees; }
    double GetFocalLength() const { return m_focalLength; }
    void SetFocalLength(double length) { m_focalLength = length; }
    double GetAltitude() const { return m_altitude; }
    void SetAltitude(double metres) { m_altitude = metres; }
    double GetSceneOrient() const { return m_sceneOrient; }
    void SetSceneOrient(double degrees) { m_sceneOrient = degrees; }
    double GetWaveLength() const { return m_waveLength; } ///< nanometres
    void SetWaveLength(double nanometres) { m_waveLength = nanometres; }
    double GetBandWidth() const { return m_bandWidth; } ///< at half of the maximum, nanometres
    void SetBandWidth(double nanometres) { m_bandWidth = nanometres; }
    int GetOriginCorner() const { return m_originCorner; } ///< 0 upper left
    void SetOriginCorner(int corner) { m_originCorner = corner; }
    /// Physical value = pixel * scale + offset, as the file states it; not applied anywhere.
    double GetOffset() const { return m_offset; }
    void SetOffset(double offset) { m_offset = offset; }
    double GetScale() const { return m_scale; }
    void SetScale(double scale) { m_scale = scale; }
    const tagXVector3& GetReferencePoint() const { return m_referencePoint; }
    void SetReferencePoint(const tagXVector3& point) { m_referencePoint = point; }

private:
    XString m_bandDate;
    int m_bandSensor = 0;
    XString m_bandSensorName;
    double m_centerX = kXUnsetCentre;
    double m_centerY = kXUnsetCentre;
    double m_cellSize = kXNotSet;
    double m_gain = kXNotSet;
    double m_bias = kXNotSet;
    double m_sunAzimuth = kXNotSet;
    double m_sunElevation = kXNotSet;
    double m_incidenceAngle = kXNotSet;
    double m_focalLength = kXNotSet;
    double m_altitude = kXNotSet;
    double m_sceneOrient = kXNotSet;
    double m_waveLength = kXNotSet;
    double m_bandWidth = kXNotSet;
    int m_originCorner = 0;
    double m_offset = 0.0;
    double m_scale = 1.0;
    tagXVector3 m_referencePoint{};
};
