-- 0003_registers.sql
-- Why: what documents choose from: the organisation and who may request and decide in it, partners and
-- currencies, units, materials and services, and the supply lists.

-- Organisation

create table CostCenters (
  CostCenter integer not null primary key,
  Name       text not null,
  Name2      text,
  FoldName   text not null,
  FoldName2  text,
  -- Employee who heads it.
  Chief      integer references Employees (Employee)
) strict;
create index CostCentersByFoldName on CostCenters (FoldName, CostCenter);
create index CostCentersByFoldName2 on CostCenters (FoldName2, CostCenter);
create index CostCentersByChief on CostCenters (Chief);

create table Sections (
  Section   integer not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text not null,
  FoldName2 text,
  Chief     integer references Employees (Employee)
) strict;
create index SectionsByFoldName on Sections (FoldName, Section);
create index SectionsByFoldName2 on Sections (FoldName2, Section);
create index SectionsByChief on Sections (Chief);

create table Structure (
  CostCenter integer not null primary key references CostCenters (CostCenter),
  Department integer references Department (Code),
  Section    integer references Sections (Section)
) strict;
create index StructureByDepartment on Structure (Department);
create index StructureBySection on Structure (Section);

create table StructureDeputies (
  IdNumber           integer not null primary key,
  -- Element of nomenclature 245: 1 cost centre, 2 section, 3 department; its column below is filled.
  StructuralUnitType integer not null check (StructuralUnitType in (1, 2, 3)),
  Department         integer references Department (Code),
  Section            integer references Sections (Section),
  CostCenter         integer references CostCenters (CostCenter)
) strict;
create index StructureDeputiesByDepartment on StructureDeputies (Department);
create index StructureDeputiesBySection on StructureDeputies (Section);
create index StructureDeputiesByCostCenter on StructureDeputies (CostCenter);

create table StructDepDates (
  StructDepId integer not null references StructureDeputies (IdNumber),
  FromDate    integer not null,
  -- Empty: until further notice.
  ToDate      integer,
  Deputy      integer not null references Employees (Employee),
  primary key (StructDepId, FromDate)
) strict, without rowid;
create index StructDepDatesByDeputy on StructDepDates (Deputy);

create table AdmissibleNotifiers (
  CostCenter integer not null references CostCenters (CostCenter),
  Notifier   integer not null references Employees (Employee),
  primary key (CostCenter, Notifier)
) strict, without rowid;
create index AdmissibleNotifiersByNotifier on AdmissibleNotifiers (Notifier, CostCenter);

create table KindSupplies (
  Code      integer not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text not null,
  FoldName2 text
) strict;
create index KindSuppliesByFoldName on KindSupplies (FoldName, Code);
create index KindSuppliesByFoldName2 on KindSupplies (FoldName2, Code);

create table LevelsApproval (
  -- Element of nomenclature 244.
  KindRegister integer not null,
  KindSupply   integer not null references KindSupplies (Code),
  Level        integer not null,
  FromSum      integer not null,
  ToSum        integer not null,
  -- Element of nomenclature 245: whose head decides.
  Approval     integer not null,
  primary key (KindRegister, KindSupply, Level, FromSum),
  constraint LevelsApprovalRange check (FromSum <= ToSum)
) strict, without rowid;
create index LevelsApprovalByKindSupply on LevelsApproval (KindSupply);

create table EmployeesFinSupp (
  -- Element of nomenclature 246.
  KindSection integer not null,
  Employee    integer not null references Employees (Employee),
  primary key (KindSection, Employee)
) strict, without rowid;
create index EmployeesFinSuppByEmployee on EmployeesFinSupp (Employee);

create table CapExPlan (
  Code           integer not null primary key,
  Name           text not null,
  Name2          text,
  FoldName       text not null,
  FoldName2      text,
  InternalNumber text,
  FromDate       integer not null,
  TimeLimit      integer not null,
  CapSum         integer not null,
  Description    text,
  Description2   text
) strict;
create index CapExPlanByFoldName on CapExPlan (FoldName, Code);
create index CapExPlanByFoldName2 on CapExPlan (FoldName2, Code);

-- Partners, currencies, and what describes their documents

create table Currencies (
  Code         integer not null primary key,
  Name         text not null,
  Name2        text,
  FoldName     text not null,
  FoldName2    text,
  -- Three letters of ISO 4217.
  CurrencyCode text not null
) strict;
create index CurrenciesByFoldName on Currencies (FoldName, Code);
create index CurrenciesByFoldName2 on Currencies (FoldName2, Code);

create table TownsAndVillages (
  Code      integer not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text not null,
  FoldName2 text
) strict;
create index TownsAndVillagesByFoldName on TownsAndVillages (FoldName, Code);
create index TownsAndVillagesByFoldName2 on TownsAndVillages (FoldName2, Code);

create table KindSupplyLists (
  Code      integer not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text not null,
  FoldName2 text
) strict;
create index KindSupplyListsByFoldName on KindSupplyLists (FoldName, Code);
create index KindSupplyListsByFoldName2 on KindSupplyLists (FoldName2, Code);

create table SupplyInvoiceDescr (
  Code           integer not null primary key,
  Name           text not null,
  Name2          text,
  FoldName       text not null,
  FoldName2      text,
  KindInvoice    integer not null,
  AdvanceInvoice integer not null check (AdvanceInvoice in (0, 1)) default 0,
  Respondent     integer not null check (Respondent in (0, 1)) default 1
) strict;
create index SupplyInvoiceDescrByFoldName on SupplyInvoiceDescr (FoldName, Code);
create index SupplyInvoiceDescrByFoldName2 on SupplyInvoiceDescr (FoldName2, Code);

create table SupplyRequestDescr (
  Code      integer not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text not null,
  FoldName2 text
) strict;
create index SupplyRequestDescrByFoldName on SupplyRequestDescr (FoldName, Code);
create index SupplyRequestDescrByFoldName2 on SupplyRequestDescr (FoldName2, Code);

create table SupplyArtVchDescr (
  Code      integer not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text not null,
  FoldName2 text
) strict;
create index SupplyArtVchDescrByFoldName on SupplyArtVchDescr (FoldName, Code);
create index SupplyArtVchDescrByFoldName2 on SupplyArtVchDescr (FoldName2, Code);

create table FreeNomElements (
  FreeNomenclature integer not null,
  Element          integer not null,
  Name             text not null,
  Name2            text,
  FoldName         text not null,
  FoldName2        text,
  primary key (FreeNomenclature, Element)
) strict, without rowid;
create index FreeNomElementsByFoldName on FreeNomElements (FreeNomenclature, FoldName, Element);
create index FreeNomElementsByFoldName2 on FreeNomElements (FreeNomenclature, FoldName2, Element);

create table Partners (
  Partner              integer not null primary key,
  Name                 text not null,
  Name2                text,
  FoldName             text not null,
  FoldName2            text,
  -- Number in the trade register.
  EIK                  text,
  PartnerTypeSupplier  integer not null check (PartnerTypeSupplier in (0, 1)) default 0,
  SuppKindCurrency     integer references Currencies (Code),
  KindSupplyChoice     integer,
  KindSupplyList       integer references KindSupplyLists (Code),
  SuppMaxTermOfPayment integer,
  SupplyInvoiceDescr   integer references SupplyInvoiceDescr (Code),
  Seat                 integer references TownsAndVillages (Code),
  Address              text,
  Address2             text,
  Telephone1           text,
  Telephone2           text,
  email                text
) strict;
create index PartnersByFoldName on Partners (FoldName, Partner);
create index PartnersByFoldName2 on Partners (FoldName2, Partner);
create index PartnersByEIK on Partners (EIK);

-- A rate holds from its date until the next one of the same bank.
create table RatesOfExchange (
  Partner       integer not null references Partners (Partner),
  KindCurrency  integer not null references Currencies (Code),
  RateDate      integer not null,
  CurrencyRate1 integer not null check (CurrencyRate1 > 0),
  primary key (Partner, KindCurrency, RateDate)
) strict, without rowid;

-- Units, materials, services, stores

create table Measures (
  Code             integer not null primary key,
  Name             text not null,
  Name2            text,
  FoldName         text not null,
  FoldName2        text,
  -- Size in the smallest unit of the block of hundred codes.
  Numerator        integer not null check (Numerator > 0),
  OrdinaryFraction integer not null check (OrdinaryFraction in (0, 1)) default 0
) strict;
create index MeasuresByFoldName on Measures (FoldName, Code);
create index MeasuresByFoldName2 on Measures (FoldName2, Code);

create table MaterialStocks (
  IdNumber          integer not null primary key,
  Name              text not null,
  Name2             text,
  FoldName          text not null,
  FoldName2         text,
  Measure           integer not null references Measures (Code),
  IncomeMeasure     integer references Measures (Code),
  BarCodeMeasure    integer references Measures (Code),
  RoundQuantity     integer,
  SuppForbiddenFrom integer,
  SuppActiveFrom    integer,
  -- Empty: the usual percentage.
  VATPercent        integer
) strict;
create index MaterialStocksByFoldName on MaterialStocks (FoldName, IdNumber);
create index MaterialStocksByFoldName2 on MaterialStocks (FoldName2, IdNumber);

create table Services (
  Code          integer not null primary key,
  Name          text not null,
  Name2         text,
  FoldName      text not null,
  FoldName2     text,
  Measure       integer references Measures (Code),
  RoundQuantity integer,
  VATPercent    integer
) strict;
create index ServicesByFoldName on Services (FoldName, Code);
create index ServicesByFoldName2 on Services (FoldName2, Code);

create table Stores (
  Code      integer not null primary key,
  Name      text not null,
  Name2     text,
  FoldName  text not null,
  FoldName2 text
) strict;
create index StoresByFoldName on Stores (FoldName, Code);
create index StoresByFoldName2 on Stores (FoldName2, Code);

create table UserAccessToStores (
  ForUser text not null references WSysUsers (ShortName) on delete cascade,
  Store   integer not null references Stores (Code),
  primary key (ForUser, Store)
) strict, without rowid;
create index UserAccessToStoresByStore on UserAccessToStores (Store);

create table KindDocInventory (
  Code          integer not null primary key,
  Name          text not null,
  Name2         text,
  FoldName      text not null,
  FoldName2     text,
  -- 1 receipt.
  KindOperation integer not null
) strict;
create index KindDocInventoryByFoldName on KindDocInventory (FoldName, Code);
create index KindDocInventoryByFoldName2 on KindDocInventory (FoldName2, Code);

-- Supply lists. Prices are in national currency, for the size of the entry's own unit.

-- One row at most.
create table DescrBaseSupplyList (
  Id              integer not null default 1 primary key check (Id = 1),
  -- 1: entries are called as their materials and services are.
  IdentityWithNom integer not null check (IdentityWithNom in (0, 1))
) strict;

create table BaseSupplyList (
  SerialNumber       integer not null primary key,
  Name               text,
  Name2              text,
  FoldName           text,
  FoldName2          text,
  -- 1 material, 2 service.
  Kind               integer not null check (Kind in (1, 2)),
  InventoryCode      integer references MaterialStocks (IdNumber),
  ServiceCode        integer references Services (Code),
  Measure            integer not null references Measures (Code),
  Price              integer,
  -- The name the entry goes by, see DescrBaseSupplyList; kept by the triggers below. Whoever loads
  -- many entries may write all four at once.
  EffectiveName      text,
  EffectiveName2     text,
  FoldEffectiveName  text,
  FoldEffectiveName2 text
) strict;
create index BaseSupplyListByFoldName on BaseSupplyList (FoldName, SerialNumber);
create index BaseSupplyListByFoldName2 on BaseSupplyList (FoldName2, SerialNumber);
create index BaseSupplyListByFoldEffectiveName
  on BaseSupplyList (FoldEffectiveName, SerialNumber);
create index BaseSupplyListByFoldEffectiveName2
  on BaseSupplyList (FoldEffectiveName2, SerialNumber);
create index BaseSupplyListByInventoryCode on BaseSupplyList (InventoryCode);
create index BaseSupplyListByServiceCode on BaseSupplyList (ServiceCode);

create table BaseSupplyListDates (
  SerialNumber      integer not null references BaseSupplyList (SerialNumber),
  AvailableFromDate integer not null,
  Price             integer,
  primary key (SerialNumber, AvailableFromDate)
) strict, without rowid;
create index BaseSupplyListDatesByDate on BaseSupplyListDates (AvailableFromDate, SerialNumber);

create table SupplyLists (
  KindList     integer not null references KindSupplyLists (Code),
  SerialNumber integer not null references BaseSupplyList (SerialNumber),
  Measure      integer not null references Measures (Code),
  Price        integer,
  primary key (KindList, SerialNumber)
) strict, without rowid;
create index SupplyListsBySerialNumber on SupplyLists (SerialNumber);

create table SupplyListsDates (
  KindList          integer not null,
  SerialNumber      integer not null,
  AvailableFromDate integer not null,
  Price             integer,
  primary key (KindList, SerialNumber, AvailableFromDate),
  foreign key (KindList, SerialNumber) references SupplyLists (KindList, SerialNumber)
) strict, without rowid;
create index SupplyListsDatesByDate on SupplyListsDates (KindList, AvailableFromDate, SerialNumber);

-- Entries that a partner supplies.
create table PartnerSupplyEntries (
  Partner      integer not null references Partners (Partner),
  SerialNumber integer not null references BaseSupplyList (SerialNumber),
  FromDate     integer not null,
  -- Empty: until further notice.
  ToDate       integer,
  primary key (Partner, SerialNumber, FromDate)
) strict, without rowid;
create index PartnerSupplyEntriesBySerialNumber on PartnerSupplyEntries (SerialNumber);

create view SupplyEntryNames as
select b.SerialNumber, b.Kind, b.InventoryCode, b.ServiceCode,
  case when d.IdentityWithNom = 1
    then case b.Kind when 1 then m.Name when 2 then s.Name end else b.Name end as EntryName,
  case when d.IdentityWithNom = 1
    then case b.Kind when 1 then m.Name2 when 2 then s.Name2 end else b.Name2 end as EntryName2,
  case when d.IdentityWithNom = 1
    then case b.Kind when 1 then m.FoldName when 2 then s.FoldName end else b.FoldName end
    as FoldEntryName,
  case when d.IdentityWithNom = 1
    then case b.Kind when 1 then m.FoldName2 when 2 then s.FoldName2 end else b.FoldName2 end
    as FoldEntryName2
from BaseSupplyList b
left join MaterialStocks m on m.IdNumber = b.InventoryCode
left join Services s on s.Code = b.ServiceCode
left join DescrBaseSupplyList d on 1 = 1;

create trigger SupplyEntryAdded after insert on BaseSupplyList when new.FoldEffectiveName is null
begin
  update BaseSupplyList set EffectiveName = n.EntryName, EffectiveName2 = n.EntryName2,
    FoldEffectiveName = n.FoldEntryName, FoldEffectiveName2 = n.FoldEntryName2
  from SupplyEntryNames n where n.SerialNumber = BaseSupplyList.SerialNumber
    and BaseSupplyList.SerialNumber = new.SerialNumber;
end;
create trigger SupplyEntryChanged after update
  of Name, Name2, FoldName, FoldName2, Kind, InventoryCode, ServiceCode on BaseSupplyList
begin
  update BaseSupplyList set EffectiveName = n.EntryName, EffectiveName2 = n.EntryName2,
    FoldEffectiveName = n.FoldEntryName, FoldEffectiveName2 = n.FoldEntryName2
  from SupplyEntryNames n where n.SerialNumber = BaseSupplyList.SerialNumber
    and BaseSupplyList.SerialNumber = new.SerialNumber;
end;
create trigger SupplyMaterialNamed after update of Name, Name2, FoldName, FoldName2 on MaterialStocks
begin
  update BaseSupplyList set EffectiveName = n.EntryName, EffectiveName2 = n.EntryName2,
    FoldEffectiveName = n.FoldEntryName, FoldEffectiveName2 = n.FoldEntryName2
  from SupplyEntryNames n where n.SerialNumber = BaseSupplyList.SerialNumber
    and BaseSupplyList.InventoryCode = new.IdNumber;
end;
create trigger SupplyServiceNamed after update of Name, Name2, FoldName, FoldName2 on Services
begin
  update BaseSupplyList set EffectiveName = n.EntryName, EffectiveName2 = n.EntryName2,
    FoldEffectiveName = n.FoldEntryName, FoldEffectiveName2 = n.FoldEntryName2
  from SupplyEntryNames n where n.SerialNumber = BaseSupplyList.SerialNumber
    and BaseSupplyList.ServiceCode = new.Code;
end;
create trigger SupplyNamingAdded after insert on DescrBaseSupplyList
begin
  update BaseSupplyList set EffectiveName = n.EntryName, EffectiveName2 = n.EntryName2,
    FoldEffectiveName = n.FoldEntryName, FoldEffectiveName2 = n.FoldEntryName2
  from SupplyEntryNames n where n.SerialNumber = BaseSupplyList.SerialNumber;
end;
create trigger SupplyNamingChanged after update on DescrBaseSupplyList
begin
  update BaseSupplyList set EffectiveName = n.EntryName, EffectiveName2 = n.EntryName2,
    FoldEffectiveName = n.FoldEntryName, FoldEffectiveName2 = n.FoldEntryName2
  from SupplyEntryNames n where n.SerialNumber = BaseSupplyList.SerialNumber;
end;
create trigger SupplyNamingDeleted after delete on DescrBaseSupplyList
begin
  update BaseSupplyList set EffectiveName = n.EntryName, EffectiveName2 = n.EntryName2,
    FoldEffectiveName = n.FoldEntryName, FoldEffectiveName2 = n.FoldEntryName2
  from SupplyEntryNames n where n.SerialNumber = BaseSupplyList.SerialNumber;
end;
