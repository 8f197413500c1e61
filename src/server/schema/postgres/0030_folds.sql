-- 0030_folds.sql
-- Why: whatever text a search may ask for is found in either case of its letters. The engine derives these folds from
-- their texts, so that nothing that writes a row can forget them.

alter table CapExPlan add column FoldInternalNumber text collate "C" generated always as (orvane_fold(InternalNumber)) stored;
alter table Deliveries add column FoldSuppDocNumber text collate "C" generated always as (orvane_fold(SuppDocNumber)) stored;
alter table Deliveries add column FoldCreatedFrom text collate "C" generated always as (orvane_fold(CreatedFrom)) stored;
alter table Deliveries add column FoldAnnulFrom text collate "C" generated always as (orvane_fold(AnnulFrom)) stored;
alter table Department add column FoldChief text collate "C" not null generated always as (orvane_fold(Chief)) stored;
alter table NomIn add column FoldName3 text collate "C" generated always as (orvane_fold(Name3)) stored;
alter table NomIn add column FoldName4 text collate "C" generated always as (orvane_fold(Name4)) stored;
alter table NomIn add column FoldName5 text collate "C" generated always as (orvane_fold(Name5)) stored;
alter table NomIn add column FoldName6 text collate "C" generated always as (orvane_fold(Name6)) stored;
alter table NomIn add column FoldName7 text collate "C" generated always as (orvane_fold(Name7)) stored;
alter table NomIn add column FoldName8 text collate "C" generated always as (orvane_fold(Name8)) stored;
alter table NomIn add column FoldName9 text collate "C" generated always as (orvane_fold(Name9)) stored;
alter table NomIn add column FoldName10 text collate "C" generated always as (orvane_fold(Name10)) stored;
alter table Partners add column FoldAddress text collate "C" generated always as (orvane_fold(Address)) stored;
alter table Partners add column FoldAddress2 text collate "C" generated always as (orvane_fold(Address2)) stored;
alter table Partners add column FoldTelephone1 text collate "C" generated always as (orvane_fold(Telephone1)) stored;
alter table Partners add column FoldTelephone2 text collate "C" generated always as (orvane_fold(Telephone2)) stored;
alter table Partners add column Foldemail text collate "C" generated always as (orvane_fold(email)) stored;
alter table PurchaseOrder add column FoldDescription text collate "C" generated always as (orvane_fold(Description)) stored;
alter table PurchaseOrder add column FoldDescription2 text collate "C" generated always as (orvane_fold(Description2)) stored;
alter table PurchaseOrder add column FoldRationale text collate "C" generated always as (orvane_fold(Rationale)) stored;
alter table PurchaseOrder add column FoldRationale2 text collate "C" generated always as (orvane_fold(Rationale2)) stored;
alter table PurchaseOrder add column FoldCreatedFrom text collate "C" generated always as (orvane_fold(CreatedFrom)) stored;
alter table PurchaseOrder add column FoldAmendFrom text collate "C" generated always as (orvane_fold(AmendFrom)) stored;
alter table PurchaseOrder add column FoldAnnulFrom text collate "C" generated always as (orvane_fold(AnnulFrom)) stored;
alter table SuppManifacOrder add column FoldDescription text collate "C" generated always as (orvane_fold(Description)) stored;
alter table SuppManifacOrder add column FoldDescription2 text collate "C" generated always as (orvane_fold(Description2)) stored;
alter table SuppManifacOrder add column FoldCreatedFrom text collate "C" generated always as (orvane_fold(CreatedFrom)) stored;
alter table SuppManifacOrder add column FoldAnnulFrom text collate "C" generated always as (orvane_fold(AnnulFrom)) stored;
alter table SuppliesContracts add column FoldContractNumber text collate "C" generated always as (orvane_fold(ContractNumber)) stored;
alter table UserAccessToStores add column FoldForUser text collate "C" not null generated always as (orvane_fold(ForUser)) stored;
