#pragma once

#include "foundation/base/XObject.h"
#include "foundation/base/XSentinels.h"
#include "foundation/base/XString.h"

#include <memory>

/// The radar side of a band. The values travel with the band and nothing here computes on them;
/// kXNotSet is a number that is not known. Records are shared, so that copying a band is cheap.
/// Plain data: no lock.
class XBandRadar
{
public:
    const XString& GetSarBeam() const { return m_sarBeam; }
    void SetSarBeam(const XString& beam) { m_sarBeam = beam; }
    const std::shared_ptr<XObject>& GetSarParam() const { return m_sarParam; }
    void SetSarParam(std::shared_ptr<XObject> record) { m_sarParam = std::move(record); }
    const std::shared_ptr<XObject>& GetSarsubset() const { return m_sarSubset; }
    void SetSarsubset(std::shared_ptr<XObject> record) { m_sarSubset = std::move(record); }
    const std::shared_ptr<XObject>& GetOrbitInterpolater() const { return m_orbit; }
    void SetOrbitInterpolater(std::shared_ptr<XObject> record) { m_orbit = std::move(record); }
    const std::shared_ptr<XObject>& GetScanSensorParam() const { return m_scanSensor; }
    void SetScanSensorParam(std::shared_ptr<XObject> record) { m_scanSensor = std::move(record); }
    double GetLambda() const { return m_lambda; } ///< metres
    void SetLambda(double metres) { m_lambda = metres; }
    double GetPRF() const { return m_prf; } ///< hertz, as all below
    void SetPRF(double hertz) { m_prf = hertz; }
    double GetSamplingFrequency() const { return m_samplingFrequency; }
    void SetSamplingFrequency(double hertz) { m_samplingFrequency = hertz; }
    double GetCarrierFrequency() const { return m_carrierFrequency; }
    void SetCarrierFrequency(double hertz) { m_carrierFrequency = hertz; }
    double GetChirpBandWidth() const { return m_chirpBandWidth; }
    void SetChirpBandWidth(double hertz) { m_chirpBandWidth = hertz; }
    double GetChirpDuration() const { return m_chirpDuration; } ///< seconds
    void SetChirpDuration(double seconds) { m_chirpDuration = seconds; }
    double GetApertureTime() const { return m_apertureTime; } ///< seconds
    void SetApertureTime(double seconds) { m_apertureTime = seconds; }
    double GetAntennaLength() const { return m_antennaLength; } ///< metres
    void SetAntennaLength(double metres) { m_antennaLength = metres; }
    double GetSquintAngle() const { return m_squintAngle; } ///< degrees
    void SetSquintAngle(double degrees) { m_squintAngle = degrees; }
    /// A band that is not radar has neither chirp.
    int IsUpChirp() const { return m_chirp > 0; }
    int IsDownChirp() const { return m_chirp < 0; }
    void SetUpChirp() { m_chirp = 1; }
    void SetDownChirp() { m_chirp = -1; }
    void SetNoChirp() { m_chirp = 0; }

private:
    XString m_sarBeam;
    std::shared_ptr<XObject> m_sarParam;
    std::shared_ptr<XObject> m_sarSubset;
    std::shared_ptr<XObject> m_orbit;
    std::shared_ptr<XObject> m_scanSensor;
    double m_lambda = kXNotSet;
    double m_prf = kXNotSet;
    double m_samplingFrequency = kXNotSet;
    double m_carrierFrequency = kXNotSet;
    double m_chirpBandWidth = kXNotSet;
    double m_chirpDuration = kXNotSet;
    double m_apertureTime = kXNotSet;
    double m_antennaLength = kXNotSet;
    double m_squintAngle = kXNotSet;
    int m_chirp = 0;
};
