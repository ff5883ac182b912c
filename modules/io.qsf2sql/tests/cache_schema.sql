CREATE TABLE Properties (Key TEXT PRIMARY KEY,Value TEXT)
CREATE TABLE Spectra (Id integer PRIMARY KEY,Rt double,Segment integer,AcquisitionKey integer,Parent integer,MzAcqRangeLower INTEGER,MzAcqRangeUpper INTEGER,SumIntensity double,MaxIntensity double,TransformatorId integer,ProfileMzId integer,ProfileIntensityId integer,LineIndexId integer,LineMzId integer,LineIntensityId integer,LineIndexWidthId integer,LinePeakAreaId integer,LineSnrId integer)
CREATE TABLE Steps (TargetSpectrum integer,Number integer,IsolationType integer,ReactionType integer,MsLevel integer,Mass double)
CREATE TABLE Transformators (Id integer PRIMARY KEY,Blob blob)
CREATE TABLE ReferenceTransformators (Id integer PRIMARY KEY,AcquisitionKey integer,TransformatorId integer)
CREATE TABLE AcquisitionKeys (Id integer PRIMARY KEY,Polarity integer,ScanMode integer,AcquisitionMode integer,MsLevel integer)
CREATE TABLE PerSpectrumVariables (Spectrum INTEGER,Variable INTEGER,Value /* affinity NONE */,PRIMARY KEY (Spectrum, Variable)) WITHOUT ROWID
CREATE TABLE PerSegAcqKeyVariables (Segment INTEGER,AcquisitionKey INTEGER,Variable INTEGER,Value /* affinity NONE */,PRIMARY KEY (Segment, AcquisitionKey, Variable)) WITHOUT ROWID
CREATE TABLE PerSegmentVariables (Segment INTEGER,Variable INTEGER,Value /* affinity NONE */,PRIMARY KEY (Segment, Variable)) WITHOUT ROWID
CREATE TABLE SupportedVariables (Variable INTEGER PRIMARY KEY, PermanentName TEXT NOT NULL, Type INTEGER NOT NULL, DisplayGroupName TEXT NOT NULL, DisplayName TEXT NOT NULL, DisplayValueText TEXT NOT NULL, DisplayFormat TEXT NOT NULL, DisplayDimension TEXT NOT NULL )
CREATE VIEW Variables AS SELECT s.Id Spectrum, sv.Variable Variable, COALESCE(specv.Value,psakv.Value,psv.Value) Value FROM Spectra                    s JOIN SupportedVariables         sv LEFT JOIN PerSegmentVariables   psv   ON psv.Segment=s.Segment AND psv.Variable=sv.Variable LEFT JOIN PerSegAcqKeyVariables psakv ON psakv.Segment=s.Segment AND psakv.AcquisitionKey=s.AcquisitionKey AND psakv.Variable=sv.Variable LEFT JOIN PerSpectrumVariables  specv ON specv.Spectrum=s.Id AND specv.Variable=sv.Variable
CREATE TABLE RequestedVariables (RequestedVariable TEXT PRIMARY KEY)
CREATE TABLE Info (SchemaVersion text,Compressor text,QSFSize integer,IDXSize integer,XTRSize integer,AllVariables boolean)
CREATE INDEX PropertyDefinitionsIndex ON SupportedVariables (PermanentName)
CREATE INDEX TrafoLineMzHelper ON Spectra (LineMzId)
CREATE INDEX TrafoProfileMzHelper ON Spectra (ProfileMzId)
